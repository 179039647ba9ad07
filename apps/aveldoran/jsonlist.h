#pragma once

#include <QtCore/QJsonValue>

class QJsonObject;

// A JSON array on standard output, one object a line.
class JsonList
{
public:
    void add(const QJsonObject &object);
    void end();

private:
    bool m_isEmpty = true;
};

// JSON has no form for an infinite number, nor for one that is none.
QJsonValue numberOrNull(double value);
