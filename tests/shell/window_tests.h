#pragma once
// What the window tests share: Qt's widget and test headers, and cases kept
// as JSON tables in tests/data, one QtTest row per entry named by its "case"
// field (or another). In a test, FETCH_CASE(c) makes c the row's JSON object.

#include <QtTest>
#include <QtWidgets>

#include "support/test_data.h"

namespace rm8::test {

inline void addJsonCases(const char* file, const char* nameKey = "case")
{
    QTest::addColumn<QByteArray>("json");
    for (const auto& entry : readJson(dataDir() / file))
        QTest::newRow(entry[nameKey].get<std::string>().c_str()) << QByteArray::fromStdString(entry.dump());
}

inline QString qs(const nlohmann::json& text)
{
    return QString::fromStdString(text.get<std::string>());
}

// An enumeration's value from its name in a table, given the names in the
// enumeration's order.
template <class E> E named(const nlohmann::json& name, std::initializer_list<const char*> names)
{
    return E(std::find(names.begin(), names.end(), name) - names.begin());
}

} // namespace rm8::test

#define FETCH_CASE(name)                                                                                               \
    QFETCH(QByteArray, json);                                                                                          \
    const nlohmann::json name = nlohmann::json::parse(json.toStdString())
