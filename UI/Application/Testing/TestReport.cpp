#include "UI/Application/Testing/TestReport.h"

#include "Server/Base/Exception.h"

#include <QDateTime>
#include <QSaveFile>
#include <QSysInfo>
#include <QXmlStreamWriter>

#include <boost/algorithm/string/replace.hpp>

#include <algorithm>

namespace Quillet {
namespace {

/// XML has no way to represent most control characters.
QString xmlText(const std::string& text)
{
    QString result = QString::fromStdString(text);
    for (QChar& sign : result)
        if ((sign < u' ' && sign != u'\n' && sign != u'\t') || sign == QChar(0xFFFE) || sign == QChar(0xFFFF))
            sign = QChar::ReplacementCharacter;
    return result;
}

QString secondsText(double seconds)
{
    return QString::number(seconds, 'f', 3);
}

/// The folders as JUnit's class name, `a.b` for `a/b/c.txt`.
QString className(const QString& suite, const QString& name)
{
    QString folders = name.section(u'/', 0, -2);
    return folders.isEmpty() ? suite : folders.replace(u'/', u'.');
}

const char* typeOf(TestResult::Kind kind)
{
    return kind == TestResult::Kind::TimedOut  ? "timeout"
           : kind == TestResult::Kind::Crashed ? "crash"
                                               : "line";
}

/// The number in a message that begins with `FILE:LINE:`; empty if it doesn't.
std::string lineOf(const TestCase& test)
{
    const std::string& message = test.result.message;
    if (!message.starts_with(test.file + ':'))
        return {};
    const size_t start = test.file.size() + 1;
    const size_t end = std::min(message.find_first_not_of("0123456789", start), message.size());
    return end < message.size() && message[end] == ':' ? message.substr(start, end - start) : std::string();
}

void writeStream(QXmlStreamWriter& xml, const char* element, const std::string& text)
{
    if (!text.empty())
        xml.writeTextElement(QLatin1String(element), xmlText(text));
}

void writeCase(QXmlStreamWriter& xml, const QString& suite, const TestCase& test)
{
    const TestResult& result = test.result;
    const QString name = xmlText(test.name);
    xml.writeStartElement(QStringLiteral("testcase"));
    xml.writeAttribute(QStringLiteral("classname"), className(suite, name));
    xml.writeAttribute(QStringLiteral("name"), name);
    xml.writeAttribute(QStringLiteral("time"), secondsText(result.seconds));
    xml.writeAttribute(QStringLiteral("file"), xmlText(test.file));
    if (const std::string line = lineOf(test); !line.empty())
        xml.writeAttribute(QStringLiteral("line"), xmlText(line));
    if (result.kind != TestResult::Kind::Passed) {
        xml.writeStartElement(result.kind == TestResult::Kind::Failed ? QStringLiteral("failure")
                                                                      : QStringLiteral("error"));
        xml.writeAttribute(QStringLiteral("message"), xmlText(result.message));
        xml.writeAttribute(QStringLiteral("type"), QLatin1String(typeOf(result.kind)));
        xml.writeCharacters(xmlText(result.message + (result.details.empty() ? "" : '\n' + result.details)));
        xml.writeEndElement();
    }
    writeStream(xml, "system-out", result.output);
    writeStream(xml, "system-err", result.errors + (result.stack.empty() ? "" : "\n" + result.stack));
    xml.writeEndElement();
}

} // namespace

TestCounts::TestCounts(const std::vector<TestCase>& cases)
{
    for (const TestCase& test : cases)
        ++(test.result.kind == TestResult::Kind::Passed   ? passed
           : test.result.kind == TestResult::Kind::Failed ? failed
                                                          : errors);
}

void writeTap(const std::string& path, const std::vector<TestCase>& cases)
{
    std::string text = "TAP version 13\n1.." + std::to_string(cases.size()) + '\n';
    for (size_t i = 0; i < cases.size(); ++i) {
        const TestCase& test = cases[i];
        const bool passed = test.result.kind == TestResult::Kind::Passed;
        // A "#" would begin a directive.
        text += (passed ? "ok " : "not ok ") + std::to_string(i + 1) + " - " +
                boost::algorithm::replace_all_copy(test.name, "#", "\\#") + '\n';
        if (!passed)
            text +=
                "  ---\n  message: '" +
                boost::algorithm::replace_all_copy(xmlText(test.result.message).toStdString(), "'", "''") +
                "'\n  severity: " + typeOf(test.result.kind) + "\n  ...\n";
    }
    QSaveFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray::fromStdString(text)) < 0 || !file.commit())
        throw Vs::Exception(path + ": The report cannot be written: " + file.errorString().toStdString() +
                            '.');
}

void writeJUnit(const std::string& path, const std::string& suite, double seconds,
                const std::vector<TestCase>& cases)
{
    QSaveFile file(QString::fromStdString(path));
    const auto refuse = [&] {
        throw Vs::Exception(path + ": The report cannot be written: " + file.errorString().toStdString() +
                            '.');
    };
    if (!file.open(QIODevice::WriteOnly))
        refuse();
    const TestCounts counts(cases);
    const QString suiteName = xmlText(suite);
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    const auto writeCounts = [&] {
        xml.writeAttribute(QStringLiteral("name"), suiteName);
        xml.writeAttribute(QStringLiteral("tests"), QString::number(cases.size()));
        xml.writeAttribute(QStringLiteral("failures"), QString::number(counts.failed));
        xml.writeAttribute(QStringLiteral("errors"), QString::number(counts.errors));
        xml.writeAttribute(QStringLiteral("time"), secondsText(seconds));
    };
    xml.writeStartElement(QStringLiteral("testsuites"));
    writeCounts();
    xml.writeStartElement(QStringLiteral("testsuite"));
    writeCounts();
    xml.writeAttribute(QStringLiteral("skipped"), QStringLiteral("0"));
    xml.writeAttribute(QStringLiteral("hostname"), QSysInfo::machineHostName());
    xml.writeAttribute(QStringLiteral("timestamp"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    for (const TestCase& test : cases)
        writeCase(xml, suiteName, test);
    xml.writeEndDocument();
    if (xml.hasError() || !file.commit())
        refuse();
}

} // namespace Quillet
