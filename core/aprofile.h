#pragma once

#include "core/afrequency.h"
#include "core/aveldoranexport.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtXml/QDomElement>

#include <memory>

// One measurement profile: a frequency plan with texts in several languages and an optional channel section, read from
// and written to one XML file. What the file holds beyond that is kept and written back.
class AVELDORAN_CORE_EXPORT AProfile : public QObject
{
    Q_OBJECT

public:
    // Bits of flags().
    enum Flag : unsigned int
    {
        InstalledProfile = 1,     // from the installed, read-only location
        UserProfile = 2,          // from the user's location
        DerivedProfile = 4,       // the id has the form base id, colon, suffix; follows the id by itself
        ModifiedProfile = 0x1000, // has unsaved changes
    };

    // A profile without id, texts and channels; not valid, and not modified until a setter is called.
    explicit AProfile(QObject *parent = nullptr);
    ~AProfile() override;

    // Reads one profile file. The caller owns the result. Null if the file can't be opened and read (missing,
    // unreadable, a directory); an object that is not valid if its content is no profile.
    static AProfile *fromFile(const QString &filename);

    // Reads a file, or the "*.profile" files of a directory by name (not of its subdirectories). The caller owns the
    // objects. Each entry is what fromFile gives for that file, so it may be null or not valid.
    static QList<AProfile *> fromPath(const QString &path);

    // A frequency as profiles and their channel sections write it: a number without a unit is megahertz, and "inf"
    // the edge of the range. What can't be read is zero.
    static AFrequency frequencyFromText(const QString &text);

    // An id that is not empty, and an end that is not below the begin.
    bool isValid() const;

    // Why the profile is not valid, with the line where there is one; for a valid one empty.
    QString errorText() const;

    // After reading none but DerivedProfile, which setFlags() leaves to the id.
    unsigned int flags() const;
    void setFlags(unsigned int flags);

    // The name that was given to fromFile; absolute for a file found in a directory. No save changes it.
    QString source() const;

    QString id() const; // by which ADataManager knows the profile

    // The text for a language such as "de_AT": of that language, else of its part before "_", else the one without a
    // language, else the first. Empty if there is none.
    QString label(const QString &language) const;
    QString description(const QString &language) const;

    // The range of the whole plan.
    AFrequency begin() const;
    AFrequency end() const;

    // The channel section as an element, or a null node. It shares the profile's document: import it to change it.
    QDomNode channelData() const;

    bool showInChannelList() const; // true if the file doesn't say

    // Each setter sets ModifiedProfile. Characters that XML can't hold are left out of texts.
    void setId(const QString &id);
    void setLabel(const QString &text, const QString &language);
    void setDescription(const QString &text, const QString &language);
    void setRange(const AFrequency &begin, const AFrequency &end);

    // Takes a copy, under the section's own name; null removes the section. One with elements nested more than 999
    // deep, itself included, is refused: the old one stays, and saving fails until another is set.
    void setChannelData(const QDomElement &channels);

    void setShowInChannelList(bool show); // as the other setters, it sets ModifiedProfile

    // Replaces the file in one step: on failure the old file is whole, and the result is false. Also false for a
    // profile that could not be read, for a channel section that was refused, and for one that XML can't hold.
    // ModifiedProfile stays set: clear it with setFlags().
    bool saveToFile(const QString &filename) const;

private:
    Q_DISABLE_COPY(AProfile)
    struct Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};
