#include "cli/JsonLine.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace tessmar::test {
namespace {

using namespace Qt::StringLiterals;

TEST(JsonLine, KeepsKeysInOrderAndDecimalsAsWritten) {
  JsonLine json;
  json.Text("name", u"Mill Pond"_s).Written("a1", u"12.50"_s).Number("records", 3).Flag("ok", true);
  json.Null("a2");
  EXPECT_EQ(json.Line(),
            u"{\"name\":\"Mill Pond\",\"a1\":12.50,\"records\":3,\"ok\":true,\"a2\":null}"_s);
}

TEST(JsonLine, GivesNullForWhatIsNoNumber) {
  for (const QString& text : {u""_s, u"---"_s, u"no sample"_s, u"1e5"_s, u".5"_s, u"01"_s, u"5."_s,
                              u"nan"_s, u"1,5"_s, u"-1\n"_s}) {
    JsonLine json;
    json.Written("a1", text);
    EXPECT_EQ(json.Line(), u"{\"a1\":null}"_s) << text.toStdString();
  }
}

// Readers give up the whole line at a number that is no double.
TEST(JsonLine, GivesNullForANumberBeyondTheLargest) {
  JsonLine json;
  json.Written("a1", QString(309, u'9')).Written("a2", u"-1"_s + QString(308, u'0') + u".5"_s);
  EXPECT_EQ(json.Line(), u"{\"a1\":null,\"a2\":-1%1.5}"_s.arg(QString(308, u'0')));
}

TEST(JsonLine, EscapesWhatATextMayHold) {
  JsonLine json;
  json.Text("name", u"a\"b\\c\nd\u00e9\u0001\u007f"_s);
  EXPECT_EQ(json.Line(), u"{\"name\":\"a\\\"b\\\\c\\u000ad\u00e9\\u0001\\u007f\"}"_s);
}

TEST(JsonLine, IsReadBackByAnotherReader) {
  QString every;
  for (char16_t c = 0; c < 0x300; ++c) every += QChar(c);
  every += QChar(0xD800);
  JsonLine json;
  json.Text("name", every);
  const QJsonDocument document = QJsonDocument::fromJson(json.Line().toUtf8());
  EXPECT_EQ(document.object().value(u"name"_s).toString().left(0x300), every.left(0x300));
  EXPECT_FALSE(json.Line().contains(u'\n'));
}

}  // namespace
}  // namespace tessmar::test
