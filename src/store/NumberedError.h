#pragma once
// An error as the old platform raised it: a number and a description. The store, the value functions and the
// workbook engine each throw their own kind, so that a handler can tell where it came from.

#include <QString>
#include <exception>
#include <string>

class NumberedError : public std::exception {
public:
    NumberedError(int number, QString description) : m_number(number), m_description(std::move(description)) {
        m_what = m_description.toStdString();
    }
    int number() const { return m_number; }
    const QString& description() const { return m_description; }
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    int m_number;
    QString m_description;
    std::string m_what;
};
