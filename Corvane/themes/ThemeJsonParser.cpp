// SPDX-License-Identifier: MIT
#include "Corvane/themes/ThemeJsonParser.h"

#include "Corvane/module/Localized.h"
#include "Corvane/module/TextError.h"
#include "Corvane/themes/JSONDecoderError.h"

#include <simdjson.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace corvane {

static_assert(ThemeJsonParser::padding >= simdjson::SIMDJSON_PADDING);

struct ThemeJsonParser::Parser {
    simdjson::dom::parser json;
};

namespace {

using simdjson::dom::element;
using simdjson::dom::element_type;

constexpr char stringType[] = "String";
constexpr char arrayType[] = "Array";
constexpr char objectType[] = "Object";

// The JSON type a value has, as the type-mismatch text names it.
QString describeFound(element_type type)
{
    switch (type) {
    case element_type::STRING:
        //% "a string"
        return localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.found.string"), "a string");
    case element_type::ARRAY:
        //% "an array"
        return localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.found.array"), "an array");
    case element_type::OBJECT:
        //% "an object"
        return localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.found.object"), "an object");
    case element_type::BOOL:
        //% "a boolean"
        return localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.found.boolean"), "a boolean");
    case element_type::NULL_VALUE:
        //% "null"
        return localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.found.null"), "null");
    case element_type::INT64:
    case element_type::UINT64:
    case element_type::DOUBLE:
        break;
    }
    //% "a number"
    return localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.found.number"), "a number");
}

// Why simdjson refused the bytes, in words a theme author can act on.
QString describeCorruption(simdjson::error_code code)
{
    switch (code) {
    case simdjson::UTF8_ERROR:
        //% "the text is not valid UTF-8"
        return localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.corrupted.utf8"), "the text is not valid UTF-8");
    case simdjson::DEPTH_ERROR:
        //% "arrays and objects are nested more than 1024 levels deep"
        return localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.corrupted.depth"),
                               "arrays and objects are nested more than 1024 levels deep");
    case simdjson::EMPTY:
        //% "the document is empty"
        return localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.corrupted.empty"), "the document is empty");
    default:
        break;
    }
    // The library's own text for the rarer faults; it ends with a full stop the outer text already has.
    QString message = QString::fromUtf8(simdjson::error_message(code));
    while (message.endsWith(u'.'))
        message.chop(1);
    return message;
}

QString fromUtf8(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

template <class T>
std::unexpected<AnyError> fail(T error)
{
    return std::unexpected(AnyError(std::move(error)));
}

// The string under `key` of `object`; `path` makes the key path only when a fault is reported, so a
// good file costs no path texts.
template <class MakePath>
Result<std::string_view, AnyError> stringAt(const simdjson::dom::object& object, std::string_view key,
                                            MakePath&& path)
{
    element value;
    if (object.at_key(key).get(value) != simdjson::SUCCESS)
        return fail(JSONDecoderError::keyNotFound(path()));
    std::string_view text;
    if (value.get(text) == simdjson::SUCCESS)
        return text;
    if (value.is_null())
        return fail(JSONDecoderError::valueNotFound(path(), QString::fromLatin1(stringType)));
    return fail(JSONDecoderError::typeMismatch(path(), QString::fromLatin1(stringType), describeFound(value.type())));
}

// The version from its text. A short ASCII text, which every real version is, is widened on the
// stack instead of into a string of its own: one allocation less for every theme read.
std::expected<Version, Version::ParsingError> readVersion(std::string_view text)
{
    constexpr std::size_t shortText = 64;
    if (text.size() <= shortText
        && std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; })) {
        char16_t widened[shortText];
        std::copy(text.begin(), text.end(), widened);
        return Version::fromString(QString::fromRawData(reinterpret_cast<const QChar*>(widened),
                                                        static_cast<qsizetype>(text.size())));
    }
    return Version::fromString(fromUtf8(text));
}

Result<Theme::Style, AnyError> styleFrom(std::string_view written)
{
    // Fast path for the spellings every real file uses; the Unicode lower-casing below gives the same.
    if (written == "dark")
        return Theme::Style::dark;
    if (written == "light")
        return Theme::Style::light;
    const QString text = fromUtf8(written);
    const QString lowered = text.toLower();
    if (lowered == u"dark")
        return Theme::Style::dark;
    if (lowered == u"light")
        return Theme::Style::light;
    return fail(TextError{QStringLiteral("Invalid style: ") + text});
}

// Whether `token` is a number as JSON writes it: an optional "-", an integer part without leading
// zeros, an optional fraction and an optional exponent. Its size is not part of the grammar.
bool isJsonNumber(std::string_view token)
{
    std::size_t i = 0;
    const auto digits = [&] {
        const std::size_t start = i;
        while (i < token.size() && token[i] >= '0' && token[i] <= '9')
            ++i;
        return i - start;
    };
    if (i < token.size() && token[i] == '-')
        ++i;
    if (i < token.size() && token[i] == '0')
        ++i;
    else if (digits() == 0)
        return false;
    if (i < token.size() && token[i] == '.') {
        ++i;
        if (digits() == 0)
            return false;
    }
    if (i < token.size() && (token[i] == 'e' || token[i] == 'E')) {
        ++i;
        if (i < token.size() && (token[i] == '+' || token[i] == '-'))
            ++i;
        if (digits() == 0)
            return false;
    }
    return i == token.size();
}

// simdjson refuses a whole document for one number beyond 64 bits (18446744073709551616, 1e309),
// though JSON sets no limit. No number is ever read here, only told apart from other types, so every
// well-formed number outside the strings becomes a 0 (padded with spaces to the same length) and the
// document can be parsed again. Badly formed numbers stay as they are and still fail the document.
// Returns whether anything was changed.
bool zeroNumbers(char* data, std::size_t length)
{
    constexpr std::string_view numberCharacters = "0123456789+-.eE";
    bool changed = false;
    bool inString = false;
    for (std::size_t i = 0; i < length; ++i) {
        const char c = data[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '-' || (c >= '0' && c <= '9')) {
            std::size_t end = i;
            while (end < length && numberCharacters.find(data[end]) != std::string_view::npos)
                ++end;
            if (isJsonNumber(std::string_view(data + i, end - i))) {
                data[i] = '0';
                std::memset(data + i + 1, ' ', end - i - 1);
                changed = true;
            }
            i = end - 1;
        }
    }
    return changed;
}

Result<QStringList, AnyError> authorsFrom(const simdjson::dom::object& theme)
{
    const QString key = QStringLiteral("author");
    element value;
    if (theme.at_key("author").get(value) != simdjson::SUCCESS)
        return fail(JSONDecoderError::keyNotFound(key));
    simdjson::dom::array authors;
    if (value.get(authors) != simdjson::SUCCESS) {
        if (value.is_null())
            return fail(JSONDecoderError::valueNotFound(key, QString::fromLatin1(arrayType)));
        return fail(JSONDecoderError::typeMismatch(key, QString::fromLatin1(arrayType), describeFound(value.type())));
    }
    QStringList names;
    names.reserve(static_cast<qsizetype>(authors.size()));
    qsizetype index = 0;
    for (element author : authors) {
        const auto path = [index] { return QStringLiteral("author[%1]").arg(index); };
        simdjson::dom::object fields;
        if (author.get(fields) != simdjson::SUCCESS) {
            if (author.is_null())
                return fail(JSONDecoderError::valueNotFound(path(), QString::fromLatin1(objectType)));
            return fail(
                JSONDecoderError::typeMismatch(path(), QString::fromLatin1(objectType), describeFound(author.type())));
        }
        auto name = stringAt(fields, "name", [&] { return path() + QStringLiteral(".name"); });
        if (!name)
            return std::unexpected(std::move(name.error()));
        names.append(fromUtf8(*name));
        ++index;
    }
    return names;
}

} // namespace

ThemeJsonParser::ThemeJsonParser() = default;
ThemeJsonParser::~ThemeJsonParser() = default;

Result<Theme, AnyError> ThemeJsonParser::decode(const QByteArray& document)
{
    return decode(document.constData(), static_cast<std::size_t>(document.size()), true);
}

Result<Theme, AnyError> ThemeJsonParser::decodePadded(const char* data, std::size_t length)
{
    return decode(data, length, false);
}

Result<Theme, AnyError> ThemeJsonParser::decode(const char* data, std::size_t length, bool copy)
{
    auto theme = decodeDocument(data, length, copy);
    if (length > retainedDocumentSize)
        m_parser.reset();
    return theme;
}

Result<Theme, AnyError> ThemeJsonParser::decodeDocument(const char* data, std::size_t length, bool copy)
{
    // Editors on some systems start UTF-8 files with a byte order mark; it is not part of the JSON.
    if (length >= 3 && std::memcmp(data, "\xEF\xBB\xBF", 3) == 0) {
        data += 3;
        length -= 3;
    }
    if (!m_parser)
        m_parser = std::make_unique<Parser>();

    element document;
    auto code = m_parser->json.parse(data, length, copy).get(document);
    simdjson::padded_string zeroed; // a copy to zero the numbers in; the caller's bytes stay as they are
    if (code == simdjson::NUMBER_ERROR) {
        zeroed = simdjson::padded_string(data, length);
        if (zeroNumbers(zeroed.data(), zeroed.size()))
            code = m_parser->json.parse(zeroed).get(document);
    }
    if (code != simdjson::SUCCESS)
        return fail(JSONDecoderError::dataCorrupted(describeCorruption(code)));

    // 1. The document is an object.
    simdjson::dom::object theme;
    if (document.get(theme) != simdjson::SUCCESS)
        return fail(JSONDecoderError::typeMismatch(QString(), QString::fromLatin1(objectType),
                                                   describeFound(document.type())));

    // 2. "name".
    auto name = stringAt(theme, "name", [] { return QStringLiteral("name"); });
    if (!name)
        return std::unexpected(std::move(name.error()));

    // 3. "style", checked before anything after it is read.
    auto writtenStyle = stringAt(theme, "style", [] { return QStringLiteral("style"); });
    if (!writtenStyle)
        return std::unexpected(std::move(writtenStyle.error()));
    auto style = styleFrom(*writtenStyle);
    if (!style)
        return std::unexpected(std::move(style.error()));

    // 4. "author".
    auto authors = authorsFrom(theme);
    if (!authors)
        return std::unexpected(std::move(authors.error()));

    // 5. "version", read leniently; a text without any number is the version's own failure.
    auto versionText = stringAt(theme, "version", [] { return QStringLiteral("version"); });
    if (!versionText)
        return std::unexpected(std::move(versionText.error()));
    auto version = readVersion(*versionText);
    if (!version)
        return fail(std::move(version.error()));

    return Theme{Theme::Identifier(fromUtf8(*name), *style), std::move(*authors), *version};
}

} // namespace corvane
