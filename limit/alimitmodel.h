#pragma once

#include "core/afrequency.h"
#include "core/aveldoranexport.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtGui/QStandardItemModel>

struct emu_entry;

// The table behind a limit editor. A top-level row is one limit line, the child rows of its first cell are the pieces
// of its curve: sections, and levels. Rows are added, moved and removed with the operations of QStandardItemModel;
// docs/limits.md tells what such rows hold.
class AVELDORAN_DATA_EXPORT ALimitModel : public QStandardItemModel
{
    Q_OBJECT

public:
    // The first six are filled in limits, the others in pieces; limits read from a file have empty items in the next
    // two. Frequencies are numbers of megahertz, held as text.
    enum Columns
    {
        ColumnName = 0, // holds the pieces
        ColumnBegin = 1,
        ColumnEnd = 2,
        ColumnUnit = 3, // the number of the unit
        ColumnDescription = 4,
        ColumnColor = 5,
        ColumnBeginFrequency = 6, // no item in a level
        ColumnEndFrequency = 7,   // in a level its frequency
        ColumnBeginValue = 8,     // no item in a level
        ColumnEndValue = 9,       // in a level its value
        ColumnInterpolation = 10  // ALimit::Interpolation
    };

    // Holds, in the begin frequency of a section that was read from a file (a double) and in the frequency of a level
    // (a 64-bit integer), what the file said in hertz. It stays as it is when the cell is edited.
    enum Roles
    {
        HertzRole = Qt::UserRole + 1
    };

    explicit ALimitModel(QObject *parent = nullptr);
    ~ALimitModel() override;

    // A number of megahertz that is set in one of the four frequency columns is stored in one form, 15 characters wide
    // with seven decimals; what is no number is 0 there. All else is stored as it is.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    QStringList unitLabels() const; // the symbols of all units; the position is the number of the unit

    // Replaces all rows by those of a limit file (docs/formats.md). On failure loadError() says why, and the result is
    // false; the rows stay if the file could not be opened, and are gone if it is damaged.
    bool loadFromFile(const QString &fileName);

    // Writes all rows to a file, whose directory is made if it is missing. Descriptions are not written, and text is
    // without the control characters that XML can't hold. If the file can't be opened, saveError() says why, and the
    // result is false. Once it is open, it is emptied and write errors go unnoticed: the result is true on a full disk
    // too. Who must know reads the file back.
    bool saveToFile(const QString &fileName);

Q_SIGNALS:
    // Before the failed operation returns, with a message for the user that names the file.
    void loadError(const QString &msg);
    void saveError(const QString &msg);

private:
    struct PieceReader;

    static QString frequencyText(const AFrequency &frequency);
    void clearRows();

    QList<const emu_entry *> m_units;
    QStringList m_headerLabels;
};
