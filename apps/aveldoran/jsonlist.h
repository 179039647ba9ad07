#pragma once

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
