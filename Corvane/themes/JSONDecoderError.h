// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace corvane {

// A theme file's JSON could not be decoded: one of the four faults a JSON decoder tells apart, with the
// path of the key it happened at (for example `author[1].name`; empty for the document itself).
class JSONDecoderError {
public:
    enum class Kind {
        dataCorrupted, // not JSON at all: malformed, invalid UTF-8, nested too deep, empty
        keyNotFound,   // a required key is missing
        valueNotFound, // a required value is null
        typeMismatch,  // a value has another JSON type than the one required
    };

    static JSONDecoderError dataCorrupted(QString reason);
    static JSONDecoderError keyNotFound(QString keyPath);
    static JSONDecoderError valueNotFound(QString keyPath, QString expectedType);
    static JSONDecoderError typeMismatch(QString keyPath, QString expectedType, QString foundType);

    Kind kind() const { return m_kind; }
    const QString& keyPath() const { return m_keyPath; }

    // One English sentence naming the key path, e.g. `No value associated with key "author".`
    QString errorDescription() const;

private:
    JSONDecoderError(Kind kind, QString keyPath, QString expected, QString detail);

    Kind m_kind;
    QString m_keyPath;
    QString m_expected; // the JSON type that was required ("String", "Array", "Object")
    QString m_detail;   // what was found instead, or why the data is not JSON
};

} // namespace corvane
