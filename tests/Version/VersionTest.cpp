// SPDX-License-Identifier: MIT
#include "Version/Version.h"

#include <QTest>

using corvane::Version;
using namespace Qt::StringLiterals;

namespace QTest {
template <>
char* toString(const Version& version)
{
    return qstrdup(version.toString().toUtf8().constData());
}
} // namespace QTest

Q_DECLARE_METATYPE(Version)

class VersionTest : public QObject {
    Q_OBJECT

private slots:
    void readsText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected"); // empty: the reading fails

        QTest::newRow("three numbers") << "1.2.3" << "1.2.3";
        QTest::newRow("one number") << "2" << "2.0.0";
        QTest::newRow("two numbers") << "1.5" << "1.5.0";
        QTest::newRow("fourth number ignored") << "1.2.3.4" << "1.2.3";
        QTest::newRow("rest after third split is one piece") << "1.2.3.4.5" << "1.2.3";
        QTest::newRow("dropped piece moves numbers forward") << "1.x.3.4" << "1.3.4";
        QTest::newRow("dropped piece and unsplit rest") << "1.x.3.4.5" << "1.3.0";
        QTest::newRow("trailing full stop") << "1.2.3." << "1.2.3";
        QTest::newRow("letter before the first number") << "V1.2.3" << "2.3.0";
        QTest::newRow("pre-release suffix") << "1.2.3-beta" << "1.2.0";
        QTest::newRow("empty piece counts as a split") << "1..2" << "1.2.0";
        QTest::newRow("empty pieces use up the splits") << "1...2.3" << "1.0.0";
        QTest::newRow("signs are dropped") << "1.-2.+3" << "1.2.3";
        QTest::newRow("leading zeros") << "007.010.0" << "7.10.0";
        QTest::newRow("leading space") << " 1.2" << "2.0.0";
        QTest::newRow("trailing space") << "1.2.3 " << "1.2.0";
        QTest::newRow("out of range") << "99999999999999999999.4" << "4.0.0";
        QTest::newRow("largest number") << "9223372036854775807" << "9223372036854775807.0.0";
        QTest::newRow("smallest number is dropped") << "-9223372036854775808.5" << "5.0.0";
        QTest::newRow("lone sign") << "+.1" << "1.0.0";
        QTest::newRow("double sign") << "--1.2" << "2.0.0";
        QTest::newRow("non-ASCII digits") << QString::fromUtf8("\u0661.2") << "2.0.0";
        QTest::newRow("full stop with combining mark is no separator")
            << QString::fromUtf8("1.\u03012.3") << "3.0.0";
        // "1." and a mark of another script, then "2.3": the first full stop belongs to the mark's
        // cluster, so the text holds one split and reads as its last number.
        for (const char16_t mark : {u'\u0941', u'\u0901', u'\u0903', u'\u093E', u'\u0BBE', u'\u0E31', u'\u0E33',
                                    u'\u0F71', u'\u1039', u'\u17B6', u'\u200D', u'\u200C', u'\u20DD'})
            QTest::addRow("full stop with U+%04X is no separator", unsigned(mark))
                << u"1."_s + QChar(mark) + u"2.3"_s << "3.0.0";
        QTest::newRow("supplementary spacing mark") << u"1.\U000110022.3"_s << "3.0.0";
        QTest::newRow("tag character") << u"1.\U000E00412.3"_s << "3.0.0";
        QTest::newRow("prepended mark before a full stop") << u"1\u0600.2.3"_s << "3.0.0";
        QTest::newRow("supplementary prepended mark") << u"1\U000110BD.2.3"_s << "3.0.0";
        // Characters that look like marks but start clusters of their own leave the full stop whole.
        QTest::newRow("Myanmar tall AA starts a cluster") << u"1.\u102B2.3"_s << "1.3.0";
        QTest::newRow("Hangul vowel jamo starts a cluster") << u"1.\u11602.3"_s << "1.3.0";
        QTest::newRow("letter after a full stop") << u"1.\u09152.3"_s << "1.3.0";
        QTest::newRow("lone surrogate after a full stop") << u"1."_s + QChar(0xD800) + u"2.3"_s << "1.3.0";
        QTest::newRow("mark before a full stop") << u"1.2\u0941.3"_s << "1.3.0";
        QTest::newRow("combining mark on a digit") << QString::fromUtf8("1\u0301.2") << "2.0.0";
        QTest::newRow("non-Latin text around numbers") << QString::fromUtf8("版本.1.2") << "1.2.0";
        QTest::newRow("empty text") << "" << "";
        QTest::newRow("word without digits") << "beta" << "";
        QTest::newRow("four full stops") << "...." << "";
    }

    void readsText()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        const auto version = Version::fromString(text);
        if (expected.isEmpty()) {
            QVERIFY(!version);
            QCOMPARE(version.error().message,
                     QStringLiteral("Version.init(string:) expects to find at least one number"));
        } else {
            QVERIFY(version);
            QCOMPARE(version->toString(), expected);
            QVERIFY(version->major() >= 0 && version->minor() >= 0 && version->patch() >= 0);
        }
    }

    void orders_data()
    {
        QTest::addColumn<Version>("left");
        QTest::addColumn<Version>("right");
        QTest::addColumn<int>("order"); // -1: left < right, 0: equal, 1: left > right

        QTest::newRow("equal") << Version(1, 2, 3) << Version(1, 2, 3) << 0;
        QTest::newRow("patch") << Version(1, 2, 3) << Version(1, 2, 4) << -1;
        QTest::newRow("patch numerically") << Version(1, 2, 10) << Version(1, 2, 9) << 1;
        QTest::newRow("minor numerically") << Version(1, 10, 0) << Version(1, 9, 0) << 1;
        QTest::newRow("major dominates") << Version(2, 0, 0) << Version(1, 99, 99) << 1;
        QTest::newRow("signed comparison") << Version(-1, 0, 0) << Version(0, 0, 0) << -1;
    }

    void orders()
    {
        QFETCH(Version, left);
        QFETCH(Version, right);
        QFETCH(int, order);
        QCOMPARE(left < right, order < 0);
        QCOMPARE(left > right, order > 0);
        QCOMPARE(left == right, order == 0);
        QCOMPARE(left <= right, order <= 0);
        QCOMPARE(left >= right, order >= 0);
        QVERIFY(!(left < left));
        QVERIFY(left <= left && left >= left);
    }
};

QTEST_APPLESS_MAIN(VersionTest)
#include "VersionTest.moc"
