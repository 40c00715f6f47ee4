#pragma once
// Test cases kept as JSON tables in tests/data/ui: one QtTest row per entry,
// named by its "case" field. In the test:
//     FETCH_CASE(c);  // c is the row's JSON object
#include <QTest>

#include "support/test_data.h"

namespace rm8::test {

inline void addJsonCases(const char* file)
{
    QTest::addColumn<QByteArray>("json");
    for (const auto& entry : readJson(dataDir() / "ui" / file))
        QTest::newRow(entry["case"].get<std::string>().c_str()) << QByteArray::fromStdString(entry.dump());
}

inline QString qs(const nlohmann::json& text)
{
    return QString::fromStdString(text.get<std::string>());
}

} // namespace rm8::test

#define FETCH_CASE(name)                                                                                              \
    QFETCH(QByteArray, json);                                                                                          \
    const nlohmann::json name = nlohmann::json::parse(json.toStdString())
