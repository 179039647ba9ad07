#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QMap>
#include <QtCore/QTranslator>

// A language of a few texts of one class, spoken as long as it lives.
class TranslatedTexts : public QTranslator
{
    Q_OBJECT

public:
    TranslatedTexts(const char *context, const QMap<QByteArray, QString> &texts)
        : m_context(context)
        , m_texts(texts)
    {
        QCoreApplication::installTranslator(this);
    }
    ~TranslatedTexts() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return context == m_context ? m_texts.value(text) : QString();
    }

private:
    QByteArray m_context;
    QMap<QByteArray, QString> m_texts;
};
