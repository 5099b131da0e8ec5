#include "Markdown/Element.h"

namespace Quillory::Markup {

QStringView Element::string() const
{
    return QStringView(m_storage->pool).sliced(raw().offset, raw().length);
}

QStringView Element::secondString() const
{
    return QStringView(m_storage->pool).sliced(raw().offset + raw().length, raw().second);
}

QString Element::plainText() const
{
    QString plain;
    for (auto index = m_index; index < raw().end; ++index) {
        Element const element(*m_storage, index);
        switch (element.kind()) {
        case RawMarkupKind::text:
        case RawMarkupKind::inlineHTML:
        case RawMarkupKind::customInline:
            plain += element.string();
            break;
        case RawMarkupKind::inlineCode:
            plain += u'`';
            plain += element.string();
            plain += u'`';
            break;
        case RawMarkupKind::softBreak:
            plain += u' ';
            break;
        case RawMarkupKind::lineBreak:
            plain += u'\n';
            break;
        default:
            break; // a container: its children follow
        }
    }
    return plain;
}

}
