// SPDX-License-Identifier: MIT
#include "library/thumbnails/source_names.h"

#include "paste/text_transformation_service.h"

namespace quillo {

QString sourceNameFor(const QString& bundleIdentifier,
                      const std::optional<InstalledApplication>& application) {
    if (application && !application->name.isEmpty()) {
        return application->name;
    }
    const QStringList parts = bundleIdentifier.split(u'.', Qt::SkipEmptyParts);
    return parts.isEmpty() ? QString()
                           : TextTransformationService::shared().apply(
                                 TextTransformation::TitleCase, parts.constLast());
}

QString SourceNames::of(const QString& bundleIdentifier) {
    if (bundleIdentifier.isEmpty()) {
        return {};
    }
    const auto known = m_known.constFind(bundleIdentifier);
    if (known != m_known.cend()) {
        return *known;
    }
    return *m_known.insert(
        bundleIdentifier,
        sourceNameFor(bundleIdentifier, m_workspace.installedApplication(bundleIdentifier)));
}

}  // namespace quillo
