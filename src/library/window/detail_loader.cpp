// SPDX-License-Identifier: MIT
#include "library/window/detail_loader.h"

namespace quillo {

DetailLoader::DetailLoader(Services services, QObject* parent)
    : QObject(parent),
      m_services(std::move(services)),
      m_newest(std::make_shared<std::atomic<quint64>>(0)) {
    m_pool.setMaxThreadCount(1);
}

DetailLoader::~DetailLoader() {
    cancel();
    m_pool.clear();
    m_pool.waitForDone();
}

void DetailLoader::load(const DetailRequest& request) {
    const quint64 number = ++*m_newest;
    m_pool.clear();
    m_pool.start([this, request, number, newest = m_newest] {
        if (*newest != number) {
            return;
        }
        const DetailContent content = read(m_services, request);
        QMetaObject::invokeMethod(
            this,
            [this, content, number] {
                if (*m_newest == number) {
                    Q_EMIT loaded(content);
                }
            },
            Qt::QueuedConnection);
    });
}

DetailContent DetailLoader::read(const Services& services, const DetailRequest& request) {
    DetailContent content{.clip = request.clip, .image = {}, .imageSize = {}, .document = {}};
    if (request.kind == ClipType::Rtf || request.kind == ClipType::Html) {
        const QByteArray bytes = services.bytes(request.clip, ClipAttribute::Attributed);
        const Result<StyledText> text = request.kind == ClipType::Rtf
                                            ? services.documents.readRtf(bytes)
                                            : services.documents.readHtml(bytes);
        if (text && !text->text.isEmpty()) {
            content.document = std::make_shared<const StyledText>(*text);
        }
        return content;
    }
    const bool isImage = request.kind == ClipType::Image;
    const QByteArray bytes = services.bytes(
        request.clip, isImage ? ClipAttribute::ImageData : ClipAttribute::LinkImageData);
    if (!bytes.isEmpty()) {
        content.imageSize = services.codec.size(bytes).value_or(QSize());
        content.image = services.codec.decodeScaled(bytes, request.bounds).value_or(QImage());
    }
    return content;
}

}  // namespace quillo
