// SPDX-License-Identifier: MIT
#include "app/updates/appcast.h"

#include <QXmlStreamReader>
#include <algorithm>
#include <utility>

#include "app/updates/version_order.h"

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr int kDeepest = 16;
constexpr size_t kMostItems = 1'000;
constexpr qsizetype kLongestText = 64;
constexpr qsizetype kSignatureBytes = 64;

// Where elements stand: rss, channel, item, and what an item is made of.
constexpr int kRootDepth = 1;
constexpr int kItemDepth = 3;
constexpr int kFieldDepth = 4;

struct Enclosure {
    AppcastItem item;
    bool isForUs = false;
};

// A version is shown to the person and compared: short, and nothing that would look otherwise.
QString plainVersion(QStringView text) {
    const QStringView version = text.trimmed();
    const bool isPlain =
        version.size() <= kLongestText && std::ranges::all_of(version, [](QChar c) {
            return c.unicode() < 0x7f && (c.isLetterOrNumber() || u".-_+ ()"_s.contains(c));
        });
    return isPlain ? version.toString() : QString();
}

// By its local name: feeds bind the prefix of the format in different ways.
QStringView attribute(const QXmlStreamAttributes& attributes, QLatin1StringView name) {
    const auto found = std::ranges::find_if(
        attributes, [name](const QXmlStreamAttribute& each) { return each.name() == name; });
    return found == attributes.end() ? QStringView() : found->value();
}

QByteArray signatureFrom(QStringView text) {
    const auto decoded = QByteArray::fromBase64Encoding(
        text.trimmed().toLatin1(),
        QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return decoded && (*decoded).size() == kSignatureBytes ? *decoded : QByteArray();
}

Enclosure enclosureFrom(const QXmlStreamAttributes& attributes) {
    const QStringView system = attribute(attributes, "os"_L1);
    Enclosure enclosure;
    enclosure.isForUs = system.isEmpty() || system.compare(u"linux", Qt::CaseInsensitive) == 0;
    enclosure.item = {plainVersion(attribute(attributes, "version"_L1)),
                      plainVersion(attribute(attributes, "shortVersionString"_L1)),
                      QUrl(attribute(attributes, "url"_L1).toString(), QUrl::StrictMode),
                      attribute(attributes, "length"_L1).toLongLong(),
                      signatureFrom(attribute(attributes, "edSignature"_L1))};
    return enclosure;
}

/// One walk through a feed.
class AppcastReader final {
public:
    AppcastReader(const QByteArray& bytes, const QString& systemVersion)
        : m_xml(bytes), m_systemVersion(systemVersion) {}

    Result<std::vector<AppcastItem>> read() {
        while (!m_xml.atEnd() && m_fault == nullptr) {
            visit(m_xml.readNext());
        }
        if (m_fault == nullptr && (m_xml.hasError() || !m_hasRoot)) {
            m_fault = "it is no feed";
        }
        if (m_fault != nullptr) {
            return failure(ErrorKind::Malformed, QString::fromLatin1(m_fault));
        }
        return std::move(m_items);
    }

private:
    void visit(QXmlStreamReader::TokenType token) {
        switch (token) {
            case QXmlStreamReader::StartElement:
                begin();
                break;
            case QXmlStreamReader::EndElement:
                end();
                break;
            case QXmlStreamReader::Characters:
                if (m_depth == kFieldDepth && m_isInItem) {
                    m_text += m_xml.text().left(kLongestText + 1);
                }
                break;
            case QXmlStreamReader::DTD:
            case QXmlStreamReader::EntityReference:
                m_fault = "it has a document type or entities of its own";
                break;
            default:
                break;
        }
    }

    void begin() {
        const QStringView name = m_xml.name();
        if (++m_depth > kDeepest) {
            m_fault = "it is nested too deeply";
        } else if (m_depth == kRootDepth) {
            m_hasRoot = name == "rss"_L1;
            m_fault = m_hasRoot ? nullptr : "it is no feed";
        } else if (m_depth == kItemDepth && name == "item"_L1) {
            beginItem();
        } else if (m_depth == kFieldDepth && m_isInItem) {
            m_text.clear();
            if (name == "enclosure"_L1) {
                addEnclosure(enclosureFrom(m_xml.attributes()));
            }
        }
    }

    void end() {
        if (m_depth == kFieldDepth && m_isInItem) {
            takeField(m_xml.name());
        } else if (m_depth == kItemDepth && m_isInItem) {
            endItem();
        }
        --m_depth;
    }

    void beginItem() {
        m_isInItem = true;
        m_isSkipped = false;
        m_item.reset();
        m_version.clear();
        m_displayVersion.clear();
        m_fault = ++m_count > kMostItems ? "it has too many items" : nullptr;
    }

    // The first for this system counts; those before it are other systems'.
    void addEnclosure(Enclosure enclosure) {
        if (enclosure.isForUs && !m_item) {
            m_item = std::move(enclosure.item);
        }
    }

    void takeField(QStringView name) {
        if (name == "version"_L1) {
            m_version = plainVersion(m_text);
        } else if (name == "shortVersionString"_L1) {
            m_displayVersion = plainVersion(m_text);
        } else if (name == "channel"_L1) {
            m_isSkipped = true;
        } else if (name == "minimumSystemVersion"_L1) {
            m_isSkipped |= compareVersions(m_systemVersion, m_text) < 0;
        }
    }

    void endItem() {
        m_isInItem = false;
        if (m_isSkipped || !m_item) {
            return;
        }
        AppcastItem& item = *m_item;
        item.displayVersion = item.displayVersion.isEmpty() ? std::exchange(m_displayVersion, {})
                                                            : item.displayVersion;
        item.version = item.version.isEmpty() ? m_version : item.version;
        item.version = item.version.isEmpty() ? item.displayVersion : item.version;
        if (item.displayVersion.isEmpty()) {
            item.displayVersion = item.version;
        }
        if (!item.version.isEmpty()) {
            m_items.push_back(std::move(item));
        }
    }

    QXmlStreamReader m_xml;
    QString m_systemVersion;
    std::vector<AppcastItem> m_items;
    const char* m_fault = nullptr;
    bool m_hasRoot = false;
    int m_depth = 0;
    size_t m_count = 0;
    bool m_isInItem = false;
    bool m_isSkipped = false;
    std::optional<AppcastItem> m_item;
    QString m_version;
    QString m_displayVersion;
    QString m_text;
};

}  // namespace

Result<std::vector<AppcastItem>> parseAppcast(const QByteArray& bytes,
                                              const QString& systemVersion) {
    if (bytes.size() > kLargestFeedBytes) {
        return failure(ErrorKind::Malformed, u"it is too large"_s);
    }
    return AppcastReader(bytes, systemVersion).read();
}

std::optional<AppcastItem> newestUpdate(const std::vector<AppcastItem>& items,
                                        const QString& runningVersion) {
    const auto newest = std::ranges::max_element(items, [](const auto& left, const auto& right) {
        return compareVersions(left.version, right.version) < 0;
    });
    if (newest == items.end() || compareVersions(newest->version, runningVersion) <= 0) {
        return std::nullopt;
    }
    return *newest;
}

bool isComplete(const AppcastItem& item) {
    return item.url.isValid() && item.url.scheme() == "https"_L1 && !item.url.host().isEmpty() &&
           item.sizeBytes > 0 && item.sizeBytes <= kLargestUpdateBytes &&
           item.signature.size() == kSignatureBytes;
}

}  // namespace quillo
