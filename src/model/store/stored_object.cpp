// SPDX-License-Identifier: MIT
#include <QLoggingCategory>

#include "base/logging.h"
#include "model/store/object_context_p.h"

namespace quillo {
namespace {

QUILLO_LOG_CATEGORY(lcObject, "StoredObject")

bool isHeavy(const ObjectId& id, int attribute) {
    return describe(id.entity).attributes[size_t(attribute)].load == AttributeLoad::Heavy;
}

}  // namespace

StoredObject::StoredObject(ObjectContext& context, ObjectId id)
    : m_context(&context), m_id(id), m_changed(describe(id.entity).attributes.size(), false) {
    for (const AttributeDescription& attribute : describe(id.entity).attributes) {
        m_values.push_back(initialValue(attribute));
        m_loaded.push_back(attribute.load == AttributeLoad::Light);
    }
}

StoredObject::~StoredObject() {
    if (m_context == nullptr) {
        return;
    }
    // Another object may have taken the place of one that was deleted.
    auto& objects = m_context->d->objects;
    if (const auto own = objects.constFind(m_id); own != objects.cend() && own->expired()) {
        objects.erase(own);
    }
}

const Value& StoredObject::value(int attribute) const {
    const auto position = size_t(attribute);
    if (!m_loaded[position] && m_context != nullptr && !m_deleted) {
        m_values[position] = m_context->d->loadHeavy(*this, attribute);
        m_loaded[position] = true;
    }
    return m_values[position];
}

void StoredObject::setValue(int attribute, Value value) {
    const auto position = size_t(attribute);
    const AttributeDescription& description = describe(m_id.entity).attributes[position];
    if (isDerived(m_id.entity, attribute)) {
        qCCritical(lcObject, "%s is derived and cannot be set", description.name);
        return;
    }
    if (std::holds_alternative<std::monostate>(value)) {
        value = initialValue(description);
    } else if (!holdsType(value, description.type)) {
        qCCritical(lcObject, "A value of the wrong type for %s is not taken", description.name);
        return;
    }
    if (m_context == nullptr || m_deleted || (m_loaded[position] && m_values[position] == value)) {
        return;
    }
    if (!m_changed[position] && m_loaded[position]) {
        m_stored[attribute] = std::move(m_values[position]);
    }
    m_values[position] = std::move(value);
    m_loaded[position] = true;
    m_changed[position] = true;
    m_context->d->noteChange(*this);
}

void StoredObject::dropHeavyValues() {
    for (size_t i = 0; i < m_values.size(); ++i) {
        if (!m_changed[i]) {
            dropHeavy(int(i));
        }
    }
}

void StoredObject::dropHeavy(int attribute) {
    if (!isHeavy(m_id, attribute)) {
        return;
    }
    if (m_changed[size_t(attribute)]) {
        m_stored.erase(attribute);
        return;
    }
    m_values[size_t(attribute)] = Value();
    m_loaded[size_t(attribute)] = false;
}

QList<int> StoredObject::changedAttributes() const {
    QList<int> positions;
    for (size_t i = 0; i < m_changed.size(); ++i) {
        if (m_changed[i]) {
            positions.append(int(i));
        }
    }
    return positions;
}

void StoredObject::takeStored(int attribute, Value value) {
    const auto position = size_t(attribute);
    if (m_changed[position]) {
        m_stored[attribute] = std::move(value);
    } else {
        m_values[position] = std::move(value);
    }
}

void StoredObject::forgetChanges() {
    m_changed.assign(m_changed.size(), false);
    m_stored.clear();
}

void StoredObject::undoChanges() {
    for (const int attribute : changedAttributes()) {
        const auto position = size_t(attribute);
        const auto stored = m_stored.find(attribute);
        m_loaded[position] = stored != m_stored.end();
        m_values[position] = m_loaded[position] ? std::move(stored->second) : Value();
    }
    forgetChanges();
}

}  // namespace quillo
