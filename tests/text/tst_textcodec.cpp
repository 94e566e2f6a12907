// SPDX-License-Identifier: GPL-3.0-or-later
#include "text/DeviceTables.h"
#include "text/TextCodec.h"
#include "text/TextForDevice.h"

#include <QStringDecoder>
#include <QStringEncoder>
#include <QTest>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

QByteArray bytesOf(const char *hex)
{
    return QByteArray::fromHex(hex);
}

// The undefined bytes of a code page, known apart from the tables under test.
QByteArray undefinedBytes(StringEncoding encoding)
{
    switch (encoding) {
    case StringEncoding::WindowsCP1250:
        return bytesOf("8183889098");
    case StringEncoding::WindowsCP1252:
        return bytesOf("818d8f909d");
    case StringEncoding::WindowsCP1253:
        return bytesOf("81888a8c8d8e8f90989a9c9d9e9faad2ff");
    default:
        return {};
    }
}

} // namespace

class TextCodecTest : public QObject
{
    Q_OBJECT

private slots:
    void codePagesAreThoseOfIcu_data();
    void codePagesAreThoseOfIcu();
    void undefinedBytesAreTold();
    void languagePicksTables_data();
    void languagePicksTables();
    void asciiIsTheSameEverywhere();
    void encodes_data();
    void encodes();
    void decodes_data();
    void decodes();
    void comesBack_data();
    void comesBack();
    void bothSpellingsAreOne();
    void composesAtEveryPlaceOfABlock();
    void marksWithoutEndCostLinearTime();
    void blockHasTheSizeOfTheText();
    void emptyTextIsNotNull();
    void spellsPlainly_data();
    void spellsPlainly();
    void whatIsReadStays();
    void plainTextCostsLinearTime();
};

void TextCodecTest::codePagesAreThoseOfIcu_data()
{
    QTest::addColumn<StringEncoding>("encoding");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("1250") << StringEncoding::WindowsCP1250 << QByteArray("windows-1250");
    QTest::newRow("1252") << StringEncoding::WindowsCP1252 << QByteArray("windows-1252");
    QTest::newRow("1253") << StringEncoding::WindowsCP1253 << QByteArray("windows-1253");
    QTest::newRow("1256") << StringEncoding::WindowsCP1256 << QByteArray("windows-1256");
}

void TextCodecTest::codePagesAreThoseOfIcu()
{
    QFETCH(StringEncoding, encoding);
    QFETCH(QByteArray, name);
    QStringDecoder decoder(name.constData());
    QStringEncoder encoder(name.constData());
    if (!decoder.isValid() || !encoder.isValid())
        QSKIP("This Qt has no ICU to compare the code pages with");
    const QByteArray undefined = undefinedBytes(encoding);
    for (int b = 0; b < 256; ++b) {
        const QByteArray byte(1, static_cast<char>(b));
        const QString expected =
            undefined.contains(byte) ? QString(QChar::ReplacementCharacter) : decoder(byte);
        QCOMPARE(TextCodec::decodeRaw(byte, encoding).text, expected);
    }
    for (char32_t c = 0; c < 0x10000; ++c) {
        const QChar unit(static_cast<char16_t>(c));
        if (unit.isSurrogate())
            continue;
        QByteArray expected = encoder(QStringView(&unit, 1));
        const bool lacking = (expected == "\x1A" && c != 0x1A) || undefined.contains(expected);
        if (lacking)
            expected = "?";
        const EncodedText encoded = TextCodec::encodeRaw(QStringView(&unit, 1), encoding);
        QVERIFY2(encoded.bytes == expected && encoded.replaced == (lacking ? 1 : 0),
                 qPrintable(QString::number(c, 16)));
    }
}

void TextCodecTest::undefinedBytesAreTold()
{
    for (const auto encoding : {StringEncoding::WindowsCP1250, StringEncoding::WindowsCP1252,
                                StringEncoding::WindowsCP1253, StringEncoding::WindowsCP1256}) {
        const QByteArray undefined = undefinedBytes(encoding);
        const DecodedText decoded = TextCodec::decodeRaw(undefined, encoding);
        QCOMPARE(decoded.text, QString(undefined.size(), QChar::ReplacementCharacter));
        QCOMPARE(decoded.undefined, undefined.size());
    }
    const DecodedText ascii = TextCodec::decodeRaw("a\x7F\x80\xFF", StringEncoding::Ascii);
    QCOMPARE(ascii.text, u"a\x7F\xFFFD\xFFFD");
    QCOMPARE(ascii.undefined, 2);
    const EncodedText lacking = TextCodec::encodeRaw(u"a\x7F\x80\xE9", StringEncoding::Ascii);
    QCOMPARE(lacking.bytes, "a\x7F??");
    QCOMPARE(lacking.replaced, 2);
}

void TextCodecTest::languagePicksTables_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QByteArray>("sent");  // U+00E9, U+0152, U+0105, U+0393, U+0633
    QTest::addColumn<QString>("received"); // of the bytes 82 9F E1
    const auto western = [](const char *name, int language) {
        QTest::newRow(name) << language << bytesOf("828c613f3f") << u"\u00E9\u0178\u00DF"_s;
    };
    for (int language = 0; language < DeviceLanguage::Count; ++language)
        if (language != 4 && language != 14 && language != 17 && language != 23)
            western(qPrintable(languageName(language)), language);
    western("below the table", -1);
    western("above the table", 28);
    QTest::newRow("French") << 4 << bytesOf("829f613f3f") << u"\u00E9\u0152\u00DF"_s;
    QTest::newRow("Greek") << 14 << bytesOf("653f61823f") << u"\u0393\u03B8\u03AC"_s;
    QTest::newRow("Polish") << 17 << bytesOf("e93fb93f3f") << u"\u201A\u017A\u00E1"_s;
    QTest::newRow("Arabic") << 23 << bytesOf("e98c613fd3") << u"\u201A\u06BA\u0644"_s;
}

void TextCodecTest::languagePicksTables()
{
    QFETCH(int, language);
    QFETCH(QByteArray, sent);
    QFETCH(QString, received);
    const EncodedText encoded = TextCodec::encode(u"\u00E9\u0152\u0105\u0393\u0633", language);
    QCOMPARE(encoded.bytes, sent);
    // Letters that lost their marks are counted as well.
    QCOMPARE(encoded.replaced, sent.count('?') + sent.count('a') + sent.count('e'));
    QCOMPARE(TextCodec::decode("\x82\x9F\xE1", language).text, received);
}

void TextCodecTest::asciiIsTheSameEverywhere()
{
    QByteArray ascii;
    for (int i = 0; i < 128; ++i)
        ascii.append(static_cast<char>(i));
    for (int language = 0; language < DeviceLanguage::Count; ++language) {
        QCOMPARE(TextCodec::encode(QString::fromLatin1(ascii), language).bytes, ascii);
        QCOMPARE(TextCodec::decode(ascii, language).text, QString::fromLatin1(ascii));
    }
}

void TextCodecTest::encodes_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("replaced");
    const auto row = [](const char *name, int language, const QString &text, const char *hex,
                        int replaced = 0) {
        QTest::newRow(name) << language << text << bytesOf(hex) << replaced;
    };
    row("German letters", 8, u"\u00C4\u00D6\u00DC\u00E4\u00F6\u00FC\u00DF"_s, "8e999a849481e1");
    row("Nordic letters", 9, u"\u00C5\u00C6\u00D8\u00E5\u00E6\u00F8"_s, "8f929d86919b");
    row("Western signs", 2, u"\u00A1\u00A2\u00A3\u00A4\u00A7\u00B0\u00B6\u00BA\u00FF"_s,
        "a19b9cfc15f814a798");
    row("kept between 128 and 160", 2, u"\u20AC\u2019\u0178\u00A0"_s, "80929fa0");
    row("capital Greek", 14, u"\u0391\u03A1\u03A3\u03A9"_s, "80909197");
    row("small Greek", 14, u"\u03B1\u03C1\u03C2\u03C3\u03C9"_s, "98a8aaa9e0");
    row("Greek with accents", 14, u"\u03AC\u03AD\u03AE\u03AF\u03CC\u03CD\u03CE\u03CA\u03CB"_s,
        "e1e2e3e5e6e7e9e4e8");
    row("Greek without a device code", 14, u"\u03AA\u03AB\u03B0"_s, "000000");
    row("Greek below the map", 14, u"\u0386\u0390"_s, "a2c0");
    row("Arabic", 23, u"\u0633\u0644\u0627\u0645"_s, "d3e1c7e3");
    row("controls that the page lacks", 2, u"\u0081\u008D\u0090"_s, "3f3f3f", 3);
    row("controls of defined bytes", 17, u"\u0080\u009F"_s, "3f3f", 2);
    row("a question mark is no replacement", 2, u"?\u4E00?"_s, "3f3f3f", 1);
    row("replacement character", 2, u"\uFFFD"_s, "3f", 1);
    row("emoji", 2, u"a\U0001F600b"_s, "613f62", 1);
    row("lone high surrogate", 2, QString(QChar(0xD83D)) + u'b', "3f62", 1);
    row("lone low surrogate", 2, QString(QChar(0xDE00)) + u'b', "3f62", 1);
    row("high surrogate at the end", 2, u'a' + QString(QChar(0xD83D)), "613f", 1);
    row("two high surrogates", 2, QString(2, QChar(0xD83D)) + QChar(0xDE00), "3f3f", 2);
    row("composed", 2, u"e\u0301n\u0303"_s, "82a4");
    row("French composed", 4, u"c\u0327a\u0302"_s, "8783");
    row("Polish composed", 17, u"z\u0307S\u030C"_s, "bf8a");
    row("Arabic composed", 23, u"\u0627\u0653"_s, "c2");
    row("Arabic composed across a vowel", 23, u"\u0627\u064E\u0653"_s, "c2f3");
    row("Greek composed twice", 14, u"\u03B9\u0308\u0301"_s, "c0");
    row("Greek, the second mark stays", 14, u"\u03B9\u0301\u0308"_s, "e5", 1);
    row("composed only where the page has it", 17, u"n\u0303o\u0301"_s, "6ef3", 1);
    row("mark that goes with no letter", 2, u"x\u0301"_s, "78", 1);
    row("mark of the same class in between", 2, u"a\u030B\u0301"_s, "61", 1);
    row("mark of another class in between", 2, u"a\u0323\u0301"_s, "a0", 1);
    row("mark without a letter", 2, u"\u0301e"_s, "3f65", 1);
    row("mark after what is lacking", 2, u"\u0438\u0306\U0001F600\u0301"_s, "3f3f", 2);
    row("letters whose marks the page lacks", 2, u"\u0219s\u0326\u1EC7e\u0323\u0302"_s, "73738888", 4);
    row("a negated sign", 2, u"\u2260=\u0338"_s, "3f3f", 2);
}

void TextCodecTest::encodes()
{
    QFETCH(int, language);
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QFETCH(int, replaced);
    const EncodedText encoded = TextCodec::encode(text, language);
    QCOMPARE(encoded.bytes.toHex(), bytes.toHex());
    QCOMPARE(encoded.replaced, replaced);
}

void TextCodecTest::decodes_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("undefined");
    const auto row = [](const char *name, int language, const char *hex, const QString &text,
                        int undefined = 0) {
        QTest::newRow(name) << language << bytesOf(hex) << text << undefined;
    };
    row("Western letters", 2, "80828e90a0a1a4e1", u"\u00C7\u00E9\u00C4\u00C9\u00E1\u00ED\u00F1\u00DF"_s);
    row("Western signs", 2, "9b9c9d9e9fa8f8", u"\u00A2\u00A3\u00A5\u00D0\u0178\u00BF\u00F8"_s);
    row("end of the Western map", 2, "b0b1b2b3", u"\u00B0\u00B1\u00B2\u00B3"_s);
    row("French", 4, "9c9f82e1", u"\u0153\u0152\u00E9\u00DF"_s);
    row("Greek letters", 14, "8097989fa8a9aaaf", u"\u0391\u03A9\u03B1\u03B8\u03C1\u03C3\u03C2\u03C8"_s);
    row("Greek accents", 14, "e0e1e2e3e4e5e6e7e8e9",
        u"\u03C9\u03AC\u03AD\u03AE\u03CA\u03AF\u03CC\u03CD\u03CB\u03CE"_s);
    row("Greek outside the maps", 14, "b0dfea", u"\u00B0\u03AF\u03BA"_s);
    row("undefined in Greek", 14, "41d2ff42", u"A\uFFFD\uFFFDB"_s, 2);
    row("undefined in Polish", 17, "b981b9", u"\u0105\uFFFD\u0105"_s, 1);
    row("undefined in a long text", 17, "41414141414141414141414141414141b9b9b981b9b9b9b9b9b9b9b9b9b9b9b998",
        u"AAAAAAAAAAAAAAAA\u0105\u0105\u0105\uFFFD\u0105\u0105\u0105\u0105\u0105\u0105\u0105\u0105\u0105"
        u"\u0105"
        u"\u0105\u0105\uFFFD"_s,
        2);
    row("Arabic", 23, "d3e1c7e3a1", u"\u0633\u0644\u0627\u0645\u060C"_s);
    row("zero bytes stay", 2, "00410042", QString::fromLatin1("\0A\0B", 4));
}

void TextCodecTest::decodes()
{
    QFETCH(int, language);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QFETCH(int, undefined);
    const DecodedText decoded = TextCodec::decode(bytes, language);
    QCOMPARE(decoded.text, text);
    QCOMPARE(decoded.undefined, undefined);
}

void TextCodecTest::comesBack_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("back");
    const auto row = [](const char *name, int language, const QString &text, const QString &back = {}) {
        QTest::newRow(name) << language << text << (back.isNull() ? text : back);
    };
    row("German", 8, u"Gr\u00FC\u00DFe aus \u00D6sterreich"_s);
    row("French", 4, u"\u0152uvre, gar\u00E7on, \u00E0 la f\u00EAte"_s);
    row("Greek", 14, u"\u039A\u03B1\u03BB\u03B7\u03BC\u03AD\u03C1\u03B1 \u03BA\u03CC\u03C3\u03BC\u03B5"_s);
    row("Polish", 17, u"Za\u017C\u00F3\u0142\u0107 g\u0119\u015Bl\u0105 ja\u017A\u0144"_s);
    row("Arabic", 23, u"\u0627\u0644\u0633\u0644\u0627\u0645 \u0639\u0644\u064A\u0643\u0645"_s);
    row("what the two maps change", 5, u"\u00A1a!"_s, u"\u00EDa!"_s);
    row("ligature outside French", 2, u"\u0153\u0152"_s, u"\u00A3\u00EE"_s);
}

void TextCodecTest::comesBack()
{
    QFETCH(int, language);
    QFETCH(QString, text);
    QFETCH(QString, back);
    QCOMPARE(TextCodec::decode(TextCodec::encode(text, language).bytes, language).text, back);
}

void TextCodecTest::bothSpellingsAreOne()
{
    for (char32_t c = 0x80; c < 0xB000; c == 0x3100 ? c = 0xAC00 : ++c) {
        const QString composed = QString::fromUcs4(&c, 1);
        const QString parts = composed.normalized(QString::NormalizationForm_D);
        if (QChar::isSurrogate(c) || parts == composed)
            continue;
        for (const int language : {2, 4, 14, 17, 23}) {
            const EncodedText one = TextCodec::encode(composed, language);
            const EncodedText other = TextCodec::encode(parts, language);
            QVERIFY2(one.bytes == other.bytes && one.replaced == other.replaced,
                     qPrintable(QString::number(c, 16)));
            QCOMPARE_LE(one.bytes.size(), composed.size());
        }
    }
}

void TextCodecTest::composesAtEveryPlaceOfABlock()
{
    for (qsizetype before = 0; before < 70; ++before) {
        const QString text = QString(before, u'a') + u"e\u0301\U0001F600"_s + QString(40, u'\u00FC');
        const EncodedText encoded = TextCodec::encode(text, DeviceLanguage::Unknown);
        QCOMPARE(encoded.bytes, QByteArray(before, 'a') + "\x82?" + QByteArray(40, '\x81'));
        QCOMPARE(encoded.replaced, 1);
    }
}

void TextCodecTest::marksWithoutEndCostLinearTime()
{
    QString text = u"\u0627"_s;
    for (int i = 0; i < 500'000; ++i)
        text += u"\u064E\u0316"_s; // a vowel that the Arabic page has, and a mark that it lacks
    const EncodedText encoded = TextCodec::encode(text, DeviceLanguage::Arabic);
    QCOMPARE(encoded.bytes.size(), 1 + 500'000);
    QCOMPARE(encoded.replaced, 1);
}

void TextCodecTest::blockHasTheSizeOfTheText()
{
    QString text;
    for (int i = 0; i < 10'000; ++i)
        text += u"\U0001F600"_s;
    const EncodedText encoded = TextCodec::encode(text, DeviceLanguage::Unknown);
    QCOMPARE(encoded.bytes, QByteArray(10'000, '?'));
    QCOMPARE_LT(encoded.bytes.capacity(), 10'100);
}

void TextCodecTest::emptyTextIsNotNull()
{
    QVERIFY(TextCodec::encode({}, DeviceLanguage::Greek).bytes.isEmpty());
    const DecodedText decoded = TextCodec::decode({}, DeviceLanguage::Greek);
    QVERIFY(decoded.text.isEmpty());
    QVERIFY(!decoded.text.isNull());
}

void TextCodecTest::spellsPlainly_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QStringList>("lost");
    const auto row = [](const char *name, int language, const QString &text, const QString &plain,
                        const QStringList &lost = {}) {
        QTest::newRow(name) << language << text << plain << lost;
    };
    row("quotes, dashes and dots", 2, u"\u2018a\u2019 \u201Cb\u201D \u2013\u2014 \u2026 5\u00A0\u20AC"_s,
        u"'a' \"b\" -- ... 5 EUR"_s);
    row("ligatures and fractions", 17, u"\uFB01 \u0153 1\u00BD"_s, u"fi oe 1 1/2"_s);
    row("ligature that the language has", 4, u"\u0153\u0152"_s, u"\u0153\u0152"_s);
    row("quotes that the page itself has", 17, u"\u201Ea\u201D \u20AC"_s, u"\u201Ea\u201D \u20AC"_s);
    row("codes of the device's own", 11, u"\u00D8l, sm\u00F8r, 4 \u00B0C, \u00A7 2, 6 \u00F7 2"_s,
        u"\u00D8l, sm\u00F8r, 4 \u00B0C, \u00A7 2, 6 \u00F7 2"_s);
    row("a letter without a code", 14, u"\u0391\u03AA \u0386"_s, u"\u0391\u0399 \u0391"_s,
        {u"\u03AA"_s, u"\u0386"_s});
    row("both spellings", 2, u"e\u0301 \u0219 s\u0326 \u1EC7"_s, u"\u00E9 s s \u00EA"_s,
        {u"\u0219"_s, u"\u1EC7"_s});
    row("no spelling", 2, u"\u4E2D\U0001F600\u4E2D \u2260"_s, u"??? ?"_s,
        {u"\u4E2D"_s, u"\U0001F600"_s, u"\u2260"_s});
    row("what nobody sees", 2, u"\u2764\uFE0Fa\u200Bb\uFEFF"_s, u"?ab"_s, {u"\u2764\uFE0F"_s});
    row("braces in disguise", 2, u"\uFF5BDEL X\uFF5D"_s, u"(DEL X)"_s);
    row("lone surrogate", 2, QString(QChar(0xD83D)), u"?"_s, {u"\\u{D83D}"_s});
}

void TextCodecTest::spellsPlainly()
{
    QFETCH(int, language);
    QFETCH(QString, text);
    const PlainText plain = plainForDevice(text, language, language);
    QTEST(plain.text, "plain");
    QTEST(plain.examples, "lost");
    QVERIFY(plain.lost >= plain.examples.size());
    // What is left the device has; nothing is replaced on the way.
    QCOMPARE(TextCodec::encode(plain.text, language).replaced, 0);
}

void TextCodecTest::whatIsReadStays()
{
    for (int language = 0; language < DeviceLanguage::Count; ++language) {
        for (int byte = 0; byte < 256; ++byte) {
            const QString read = TextCodec::decode(QByteArray(1, static_cast<char>(byte)), language).text;
            const QByteArray sent = TextCodec::encode(read, language).bytes;
            if (TextCodec::decode(sent, language).text == read && read != QChar(QChar::ReplacementCharacter))
                QCOMPARE(plainForDevice(read, language, language).text, read);
        }
    }
}

void TextCodecTest::plainTextCostsLinearTime()
{
    const QString marks = u'a' + u"\u0316\u0301"_s.repeated(500'000);
    const PlainText plain = plainForDevice(marks + u"\u2019s"_s.repeated(300'000), 2, 2);
    QCOMPARE(plain.lost, 1);
    QCOMPARE(plain.text, u"\u00E1"_s + u"'s"_s.repeated(300'000));
}

QTEST_APPLESS_MAIN(TextCodecTest)
#include "tst_textcodec.moc"
