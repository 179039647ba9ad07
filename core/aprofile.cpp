#include "core/aprofile.h"

#include "core/atomicfile.h"
#include "core/regularfile.h"
#include "core/xmldocument.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace {

const QLatin1String kRootTag("profile");
const QLatin1String kIdAttribute("id");
const QLatin1String kShowAttribute("showInChannelList");
const QLatin1String kLanguageAttribute("lang");
const QLatin1String kLabelTag("label");
const QLatin1String kDescriptionTag("description");
const QLatin1String kBeginTag("begin");
const QLatin1String kEndTag("end");
const QLatin1String kChannelsTag("channels");

QDomDocument emptyProfileDocument()
{
    QDomDocument document;
    document.appendChild(document.createElement(kRootTag));
    return document;
}

constexpr int kMaxSectionDepth = kMaxXmlDepth - 1; // the profile itself is one

// Whether elements are nested too deep for a profile; found without recursion.
bool isTooDeep(const QDomElement &section)
{
    QDomElement element = section;
    for (int depth = 1; depth <= kMaxSectionDepth;) {
        const QDomElement child = element.firstChildElement();
        if (!child.isNull()) {
            element = child;
            ++depth;
            continue;
        }
        while (element != section && element.nextSiblingElement().isNull()) {
            element = element.parentNode().toElement();
            --depth;
        }
        if (element == section)
            return false;
        element = element.nextSiblingElement();
    }
    return true;
}

// Leaves out the characters that XML can't hold, from all texts and attributes.
void cleanTexts(QDomNode node)
{
    const QDomNamedNodeMap attributes = node.attributes();
    for (int i = 0; i < attributes.size(); ++i)
        attributes.item(i).setNodeValue(withoutNonXmlCharacters(attributes.item(i).nodeValue()));
    if (!node.nodeValue().isEmpty())
        node.setNodeValue(withoutNonXmlCharacters(node.nodeValue()));
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        cleanTexts(child);
}

QDomElement elementForLanguage(const QDomElement &root, QLatin1String tag, const QString &language)
{
    QDomElement element = root.firstChildElement(tag);
    while (!element.isNull() && element.attribute(kLanguageAttribute) != language)
        element = element.nextSiblingElement(tag);
    return element;
}

QString textForLanguage(const QDomElement &root, QLatin1String tag, const QString &language)
{
    for (const QString &wanted : {language, language.section(QLatin1Char('_'), 0, 0), QString()}) {
        const QDomElement element = elementForLanguage(root, tag, wanted);
        if (!element.isNull())
            return element.text();
    }
    return root.firstChildElement(tag).text();
}

} // namespace

struct AProfile::Private
{
    QDomDocument document = emptyProfileDocument();
    QString source;
    QString readError;
    bool isSectionRefused = false; // the last one was nested too deep
    unsigned int flags = 0;        // without DerivedProfile, which the id decides

    QDomElement root() const { return document.documentElement(); }

    // Before the channel section, so that a written file reads from the general to the particular.
    void insertElement(const QDomElement &element)
    {
        const QDomElement channels = root().firstChildElement(kChannelsTag);
        if (channels.isNull())
            root().appendChild(element);
        else
            root().insertBefore(element, channels);
    }

    void setElementText(QDomElement element, const QString &text)
    {
        while (element.hasChildNodes())
            element.removeChild(element.firstChild());
        element.appendChild(document.createTextNode(withoutNonXmlCharacters(text)));
        flags |= ModifiedProfile;
    }

    void setTextForLanguage(QLatin1String tag, const QString &text, const QString &language)
    {
        QDomElement element = elementForLanguage(root(), tag, language);
        if (element.isNull()) {
            element = document.createElement(tag);
            if (!language.isEmpty())
                element.setAttribute(kLanguageAttribute, withoutNonXmlCharacters(language));
            insertElement(element);
        }
        setElementText(element, text);
    }

    void setChildText(QLatin1String tag, const QString &text)
    {
        QDomElement element = root().firstChildElement(tag);
        if (element.isNull()) {
            element = document.createElement(tag);
            insertElement(element);
        }
        setElementText(element, text);
    }
};

AProfile::AProfile(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{}

AProfile::~AProfile() = default;

AProfile *AProfile::fromFile(const QString &filename)
{
    QFile file(filename);
    QString openError;
    if (!openRegularFile(&file, &openError))
        return nullptr;

    XmlError error;
    const QDomDocument document = readXmlDocument(&file, &error);
    if (file.error() != QFileDevice::NoError)
        return nullptr;

    auto *profile = new AProfile;
    profile->d->source = filename;
    if (document.isNull()) {
        profile->d->readError =
            tr("Line %1, column %2: %3").arg(QString::number(error.line), QString::number(error.column), error.text);
    } else if (document.documentElement().tagName() != kRootTag) {
        profile->d->readError =
            tr("The root element is '%1', expected 'profile'").arg(document.documentElement().tagName());
    } else {
        profile->d->document = document;
    }
    return profile;
}

QList<AProfile *> AProfile::fromPath(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isDir())
        return QFile::exists(path) ? QList<AProfile *>{fromFile(path)} : QList<AProfile *>();

    const QFileInfoList files =
        QDir(path).entryInfoList({QStringLiteral("*.profile")}, QDir::Files | QDir::CaseSensitive, QDir::Name);
    QList<AProfile *> profiles;
    profiles.reserve(files.size());
    for (const QFileInfo &file : files)
        profiles.append(fromFile(file.absoluteFilePath()));
    return profiles;
}

AFrequency AProfile::frequencyFromText(const QString &text)
{
    const QByteArray latin1 = text.toLatin1();
    if (AFrequency::unitForSuffix(latin1.constData()) != AFrequency::NoUnit)
        return AFrequency(latin1.constData());
    return AFrequency::fromValue(text.toDouble(), AFrequency::MHz);
}

bool AProfile::isValid() const
{
    return d->readError.isEmpty() && !id().isEmpty() && begin() <= end();
}

QString AProfile::errorText() const
{
    if (!d->readError.isEmpty())
        return d->readError;
    if (id().isEmpty())
        return tr("The profile has no id");
    return isValid() ? QString() : tr("The end lies below the begin");
}

unsigned int AProfile::flags() const
{
    return id().contains(QLatin1Char(':')) ? d->flags | DerivedProfile : d->flags;
}

void AProfile::setFlags(unsigned int flags)
{
    d->flags = flags & ~static_cast<unsigned int>(DerivedProfile);
}

QString AProfile::source() const
{
    return d->source;
}

QString AProfile::id() const
{
    return d->root().attribute(kIdAttribute);
}

QString AProfile::label(const QString &language) const
{
    return textForLanguage(d->root(), kLabelTag, language);
}

QString AProfile::description(const QString &language) const
{
    return textForLanguage(d->root(), kDescriptionTag, language);
}

AFrequency AProfile::begin() const
{
    return frequencyFromText(d->root().firstChildElement(kBeginTag).text());
}

AFrequency AProfile::end() const
{
    return frequencyFromText(d->root().firstChildElement(kEndTag).text());
}

QDomNode AProfile::channelData() const
{
    return d->root().firstChildElement(kChannelsTag);
}

bool AProfile::showInChannelList() const
{
    const QString show = d->root().attribute(kShowAttribute, QStringLiteral("1")).trimmed();
    return show != QLatin1String("0") && show != QLatin1String("false");
}

void AProfile::setId(const QString &id)
{
    d->root().setAttribute(kIdAttribute, withoutNonXmlCharacters(id));
    d->flags |= ModifiedProfile;
}

void AProfile::setLabel(const QString &text, const QString &language)
{
    d->setTextForLanguage(kLabelTag, text, language);
}

void AProfile::setDescription(const QString &text, const QString &language)
{
    d->setTextForLanguage(kDescriptionTag, text, language);
}

void AProfile::setRange(const AFrequency &begin, const AFrequency &end)
{
    d->setChildText(kBeginTag, begin.canonicalText());
    d->setChildText(kEndTag, end.canonicalText());
}

void AProfile::setChannelData(const QDomElement &channels)
{
    d->flags |= ModifiedProfile;
    d->isSectionRefused = isTooDeep(channels); // importing, cleaning and deleting it would recurse
    if (d->isSectionRefused)
        return;
    const QDomElement old = d->root().firstChildElement(kChannelsTag);
    if (!channels.isNull()) {
        QDomElement section = d->document.importNode(channels, true).toElement();
        section.setPrefix(QString());
        section.setTagName(kChannelsTag);
        cleanTexts(section);
        d->root().insertAfter(section, old);
    }
    d->root().removeChild(old);
}

void AProfile::setShowInChannelList(bool show)
{
    d->root().setAttribute(kShowAttribute, show ? QStringLiteral("1") : QStringLiteral("0"));
    d->flags |= ModifiedProfile;
}

bool AProfile::saveToFile(const QString &filename) const
{
    if (!d->readError.isEmpty())
        return false; // what was read is not held here, so writing would lose it
    if (d->isSectionRefused)
        return false; // what the application meant to save is not held here either
    QByteArray content = writeXmlDocument(d->document);
    QBuffer written(&content);
    XmlError error;
    if (!written.open(QIODevice::ReadOnly) || readXmlDocument(&written, &error).isNull())
        return false; // a channel section that an application built may hold what XML can't
    written.close();
    return writeFileAtomically(filename, content);
}
