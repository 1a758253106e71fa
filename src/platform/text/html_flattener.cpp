// SPDX-License-Identifier: MIT
#include "platform/text/html_flattener.h"

#include <QHash>
#include <algorithm>

namespace quillo {
namespace {

using namespace Qt::StringLiterals;

constexpr std::size_t kMaxOpenElements = 100;
constexpr qsizetype kMaxSpans = 20'000;
constexpr qsizetype kMaxLinkUnits = 8192;
constexpr int kMaxItemNumber = 1'000'000;

bool isOneOf(const HtmlElement* element, std::initializer_list<HtmlRole> roles) {
    return element != nullptr && std::ranges::find(roles, element->role) != roles.end();
}

std::size_t hashOfName(QStringView name) {
    return qHash(name.toString().toLower());
}

bool isName(QStringView name, QLatin1StringView wanted) {
    return name.compare(wanted, Qt::CaseInsensitive) == 0;
}

}  // namespace

HtmlFlattener::HtmlFlattener(QStringView html)
    : m_tokens(html),
      m_hasFragment(html.contains(u"<!--StartFragment-->")),
      m_inFragment(!m_hasFragment),
      // Qt writes the paragraphs' white space into a style sheet, and those are not read.
      m_isQtDocument(html.contains(u"name=\"qrichtext\"")) {
    m_open.back().element = &htmlElement({});
}

QString HtmlFlattener::run() {
    while (!m_writer.isFull()) {
        const HtmlToken token = m_tokens.next();
        if (token.kind == HtmlTokenKind::End) {
            break;
        }
        handle(token);
    }
    popTo(1);
    return m_writer.take();
}

void HtmlFlattener::handle(const HtmlToken& token) {
    switch (token.kind) {
        case HtmlTokenKind::Text:
            if (isVisible()) {
                m_writer.addText(token.text, m_open.back().preservesSpace);
            }
            break;
        case HtmlTokenKind::StartTag:
            openTag(token);
            break;
        case HtmlTokenKind::EndTag:
            closeTag(token.text);
            break;
        case HtmlTokenKind::Comment:
            handleComment(token.text.trimmed());
            break;
        case HtmlTokenKind::End:
            break;
    }
}

void HtmlFlattener::handleComment(QStringView comment) {
    if (m_hasFragment && comment == u"StartFragment") {
        m_inFragment = true;
    } else if (m_hasFragment && comment == u"EndFragment") {
        m_inFragment = false;
    }
}

void HtmlFlattener::openTag(const HtmlToken& token) {
    const HtmlElement& element = htmlElement(token.text);
    switch (element.role) {
        case HtmlRole::Void:
            break;
        case HtmlRole::RawText:
            m_tokens.skipPast(token.text);
            break;
        case HtmlRole::LineBreak:
            if (isVisible()) {
                m_writer.lineBreak();
            }
            break;
        default:
            closeImplied(element.role);
            push(element, token);
    }
    if (isName(token.text, "hr"_L1)) {
        closeTag(token.text);
    }
}

void HtmlFlattener::push(const HtmlElement& element, const HtmlToken& token) {
    if (m_open.size() > kMaxOpenElements) {
        ++m_tooDeep;
        if (isVisible() && (isBlockRole(element.role) || element.role == HtmlRole::Row)) {
            m_writer.blockBoundary();
        }
        return;
    }
    const OpenElement& outer = m_open.back();
    const Effect effect = effectOf(element, token.attributes);
    const bool isQtParagraph =
        m_isQtDocument && isOneOf(&element, {HtmlRole::Paragraph, HtmlRole::ListItem});
    OpenElement open{
        .element = &element,
        .nameHash = hashOfName(token.text),
        .hidden = outer.hidden || effect.style.hidden || element.role == HtmlRole::Hidden,
        .preservesSpace = effect.style.preservesSpace.value_or(
            outer.preservesSpace || element.preservesSpace || isQtParagraph),
        .hasListMarks = effect.style.hasListMarks.value_or(
            isOneOf(&element, {HtmlRole::List, HtmlRole::OrderedList}) || outer.hasListMarks)};
    if (element.role == HtmlRole::OrderedList) {
        open.count = effect.firstNumber - 1;
    }
    m_open.push_back(open);
    if (isVisible()) {
        beginStructure(m_open.back());
    }
    openSpan(m_open.back(), effect);
}

HtmlFlattener::Effect HtmlFlattener::effectOf(const HtmlElement& element, QStringView attributes) {
    Effect effect;
    QString attributeCss;
    bool hidden = false;
    const bool isFont = element.name == "font"_L1;
    forEachAttribute(attributes, [&](QStringView name, QStringView value) {
        if (isName(name, "style"_L1)) {
            effect.style = readStyleAttribute(withoutCharacterReferences(value));
        } else if (isName(name, "hidden"_L1)) {
            hidden = true;
        } else if (isFont && isName(name, "color"_L1)) {
            attributeCss += safeDeclaration(u"color", withoutCharacterReferences(value));
        } else if (isFont && isName(name, "face"_L1)) {
            attributeCss += safeDeclaration(u"font-family", withoutCharacterReferences(value));
        } else if (element.name == "a"_L1 && isName(name, "href"_L1)) {
            effect.link = withoutCharacterReferences(value).trimmed().left(kMaxLinkUnits);
            attributeCss += u"text-decoration:underline;"_s;
        } else if (isName(name, "start"_L1)) {
            effect.firstNumber = std::clamp(value.toInt(), -kMaxItemNumber, kMaxItemNumber);
        }
    });
    effect.style.hidden = effect.style.hidden || hidden;
    effect.style.css = (element.style.isEmpty() ? QString() : element.style + u";"_s) +
                       attributeCss + effect.style.css;
    return effect;
}

void HtmlFlattener::openSpan(OpenElement& open, const Effect& effect) {
    const bool hasEffect = !effect.style.css.isEmpty() || !effect.link.isEmpty();
    if (!hasEffect || open.hidden || m_spans >= kMaxSpans) {
        return;
    }
    QString markup = u"<span"_s;
    if (!effect.style.css.isEmpty()) {
        markup += u" style=\""_s + effect.style.css.toHtmlEscaped() + u'"';
    }
    if (!effect.link.isEmpty()) {
        markup += u" title=\""_s + effect.link.toHtmlEscaped() + u'"';
    }
    m_writer.addMarkup(markup + u'>');
    open.hasSpan = true;
    ++m_spans;
}

void HtmlFlattener::beginStructure(OpenElement& open) {
    switch (open.element->role) {
        case HtmlRole::ListItem:
            beginItem(open);
            break;
        case HtmlRole::Cell: {
            OpenElement* const row = nearest({HtmlRole::Row, HtmlRole::Table});
            const bool isFirst = row == nullptr || row->count++ == 0;
            open.outerCellWasEmpty = m_writer.beginCell(isFirst);
            break;
        }
        case HtmlRole::Row:
            m_writer.blockBoundary();
            break;
        default:
            if (isBlockRole(open.element->role)) {
                m_writer.blockBoundary();
            }
            if (open.element->preservesSpace) {
                m_writer.ignoreNextLineFeed();
            }
    }
}

void HtmlFlattener::beginItem(const OpenElement& item) {
    OpenElement* const list = nearest({HtmlRole::List, HtmlRole::OrderedList});
    if (!item.hasListMarks) {
        m_writer.blockBoundary();
    } else if (isOneOf(list == nullptr ? nullptr : list->element, {HtmlRole::OrderedList})) {
        m_writer.listMark(QString::number(++list->count) + u". "_s);
    } else {
        m_writer.listMark(u"• "_s);
    }
}

void HtmlFlattener::endStructure(const OpenElement& closed) {
    switch (closed.element->role) {
        case HtmlRole::Cell:
            m_writer.endCell(closed.outerCellWasEmpty);
            break;
        case HtmlRole::Row:
            closed.count > 0 ? m_writer.lineBreak() : m_writer.blockBoundary();
            break;
        case HtmlRole::ListItem:
            m_writer.dropListMark();
            m_writer.blockBoundary();
            break;
        default:
            if (isBlockRole(closed.element->role)) {
                m_writer.blockBoundary();
            }
    }
}

// HTML lets many end tags be left out; these are the ones that a start tag stands in for.
void HtmlFlattener::closeImplied(HtmlRole role) {
    switch (role) {
        case HtmlRole::ListItem:
            closeUpTo(HtmlRole::ListItem,
                      {HtmlRole::List, HtmlRole::OrderedList, HtmlRole::Table, HtmlRole::Cell});
            break;
        case HtmlRole::Row:
            closeUpTo(HtmlRole::Row, {HtmlRole::Table});
            break;
        case HtmlRole::Cell:
            closeUpTo(HtmlRole::Cell, {HtmlRole::Row, HtmlRole::Table});
            break;
        default:
            if (isBlockRole(role)) {
                closeUpTo(HtmlRole::Paragraph, {HtmlRole::Cell, HtmlRole::Table});
            }
    }
}

void HtmlFlattener::closeUpTo(HtmlRole target, std::initializer_list<HtmlRole> barriers) {
    for (std::size_t height = m_open.size(); height > 1; --height) {
        const HtmlElement* const element = m_open[height - 1].element;
        if (element->role == target) {
            popTo(height - 1);
            return;
        }
        if (isOneOf(element, barriers)) {
            return;
        }
    }
}

void HtmlFlattener::closeTag(QStringView name) {
    if (m_tooDeep > 0) {
        --m_tooDeep;
        return;
    }
    const HtmlElement& element = htmlElement(name);
    if (element.role == HtmlRole::LineBreak && isVisible()) {
        m_writer.lineBreak();
        return;
    }
    const bool crossesCells = isOneOf(&element, {HtmlRole::Cell, HtmlRole::Row, HtmlRole::Table});
    const std::size_t hash = hashOfName(name);
    for (std::size_t height = m_open.size(); height > 1; --height) {
        const OpenElement& open = m_open[height - 1];
        if (open.nameHash == hash) {
            popTo(height - 1);
            return;
        }
        if (open.element->role == HtmlRole::Cell && !crossesCells) {
            return;
        }
    }
}

void HtmlFlattener::popTo(std::size_t height) {
    while (m_open.size() > height) {
        const OpenElement closed = m_open.back();
        if (closed.hasSpan) {
            m_writer.addMarkup(u"</span>");
        }
        if (isVisible()) {
            endStructure(closed);
        }
        m_open.pop_back();
    }
}

HtmlFlattener::OpenElement* HtmlFlattener::nearest(std::initializer_list<HtmlRole> roles) {
    const auto found = std::find_if(m_open.rbegin() + 1, m_open.rend(),
                                    [&](const auto& open) { return isOneOf(open.element, roles); });
    return found == m_open.rend() ? nullptr : &*found;
}

}  // namespace quillo
