#pragma once

#include "core/modeltexts.h"
#include "core/testbasics.h"
#include "limit/alimitmodel.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QtTest>

// What the tests of the limit model share: files in a directory of their own, a model that tells its failures and is
// watched by the model tester, and rows as texts.
namespace limitfiles {

inline void writeBytes(const QString &fileName, const QByteArray &content)
{
    if (!testbasics::writeFile(fileName, content))
        qFatal("can't write %s", qPrintable(fileName));
}

using testbasics::readFile;

// Each cell as text, "-" where there is no item.
inline QStringList rowTexts(const QAbstractItemModel &model, int row, const QModelIndex &parent = {})
{
    const auto *items = qobject_cast<const QStandardItemModel *>(&model);
    QStringList texts;
    for (int column = 0; column < model.columnCount(parent); ++column) {
        const QModelIndex cell = model.index(row, column, parent);
        const QStandardItem *above = parent.isValid() ? items->itemFromIndex(parent) : items->invisibleRootItem();
        texts << (above->child(row, column) ? cell.data().toString() : QStringLiteral("-"));
    }
    return texts;
}

using modeltexts::headerTexts;

// A line for each limit and, indented, each piece: the cells joined by "|".
inline QStringList tableTexts(const QAbstractItemModel &model)
{
    QStringList lines;
    for (int row = 0; row < model.rowCount(); ++row) {
        lines << rowTexts(model, row).join(QLatin1Char('|'));
        const QModelIndex limit = model.index(row, 0);
        for (int piece = 0; piece < model.rowCount(limit); ++piece)
            lines << QStringLiteral("  ") + rowTexts(model, piece, limit).mid(6).join(QLatin1Char('|'));
    }
    return lines;
}

inline QByteArray document(const QByteArray &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>\n" + body + "</data>\n";
}

class LimitDir
{
public:
    LimitDir()
        : tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
        QObject::connect(&model, &ALimitModel::loadError, &model, [this](const QString &text) { loadErrors << text; });
        QObject::connect(&model, &ALimitModel::saveError, &model, [this](const QString &text) { saveErrors << text; });
    }

    QString path(const QString &name = {}) const { return m_directory.filePath(name); }

    QString write(const QByteArray &content, const QString &name = QStringLiteral("in.xml")) const
    {
        writeBytes(path(name), content);
        return path(name);
    }

    bool load(const QByteArray &content) { return model.loadFromFile(write(content)); }

    // What the model makes of its rows in a file; null if it failed.
    QByteArray saved()
    {
        const QString name = path(QStringLiteral("out.xml"));
        return model.saveToFile(name) ? readFile(name) : QByteArray();
    }

    ALimitModel model;
    QAbstractItemModelTester tester;
    QStringList loadErrors;
    QStringList saveErrors;

private:
    QTemporaryDir m_directory;
};

} // namespace limitfiles
