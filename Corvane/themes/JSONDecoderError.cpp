// SPDX-License-Identifier: MIT
#include "Corvane/themes/JSONDecoderError.h"

#include "Corvane/module/Localized.h"

namespace corvane {

JSONDecoderError::JSONDecoderError(Kind kind, QString keyPath, QString expected, QString detail)
    : m_kind(kind), m_keyPath(std::move(keyPath)), m_expected(std::move(expected)), m_detail(std::move(detail))
{
}

JSONDecoderError JSONDecoderError::dataCorrupted(QString reason)
{
    return JSONDecoderError(Kind::dataCorrupted, QString(), QString(), std::move(reason));
}

JSONDecoderError JSONDecoderError::keyNotFound(QString keyPath)
{
    return JSONDecoderError(Kind::keyNotFound, std::move(keyPath), QString(), QString());
}

JSONDecoderError JSONDecoderError::valueNotFound(QString keyPath, QString expectedType)
{
    return JSONDecoderError(Kind::valueNotFound, std::move(keyPath), std::move(expectedType), QString());
}

JSONDecoderError JSONDecoderError::typeMismatch(QString keyPath, QString expectedType, QString foundType)
{
    return JSONDecoderError(Kind::typeMismatch, std::move(keyPath), std::move(expectedType), std::move(foundType));
}

QString JSONDecoderError::errorDescription() const
{
    switch (m_kind) {
    case Kind::dataCorrupted: {
        //% "The data couldn't be read because it isn't valid JSON (%1)."
        const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.dataCorrupted"),
                                               "The data couldn't be read because it isn't valid JSON (%1).");
        return fillPlaceholders(format, {m_detail});
    }
    case Kind::keyNotFound: {
        //% "No value associated with key \"%1\"."
        const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.keyNotFound"),
                                               "No value associated with key \"%1\".");
        return fillPlaceholders(format, {m_keyPath});
    }
    case Kind::valueNotFound: {
        //% "Expected %1 value for key \"%2\" but found null instead."
        const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.valueNotFound"),
                                               "Expected %1 value for key \"%2\" but found null instead.");
        return fillPlaceholders(format, {m_expected, m_keyPath});
    }
    case Kind::typeMismatch:
        if (m_keyPath.isEmpty()) {
            //% "Expected the document to be a JSON %1 but found %2 instead."
            const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.typeMismatch.document"),
                                                   "Expected the document to be a JSON %1 but found %2 instead.");
            return fillPlaceholders(format, {m_expected, m_detail});
        } else {
            //% "Expected %1 value for key \"%2\" but found %3 instead."
            const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecoderError.typeMismatch"),
                                                   "Expected %1 value for key \"%2\" but found %3 instead.");
            return fillPlaceholders(format, {m_expected, m_keyPath, m_detail});
        }
    }
    return {};
}

} // namespace corvane
