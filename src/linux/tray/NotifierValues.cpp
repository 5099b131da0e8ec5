#include "linux/tray/NotifierValues.h"

#include <QDBusMetaType>
#include <QImage>
#include <QtEndian>

namespace Quillory::NotifierValues {

namespace {

template<typename... Fields>
QDBusArgument& writeStructure(QDBusArgument& argument, Fields const&... fields)
{
    argument.beginStructure();
    (argument << ... << fields);
    argument.endStructure();
    return argument;
}

template<typename... Fields>
QDBusArgument const& readStructure(QDBusArgument const& argument, Fields&... fields)
{
    argument.beginStructure();
    (argument >> ... >> fields);
    argument.endStructure();
    return argument;
}

}

Picture Picture::of(QImage const& image)
{
    auto const pixels = image.convertToFormat(QImage::Format_ARGB32);
    QByteArray bytes(pixels.sizeInBytes(), Qt::Uninitialized);
    qToBigEndian<quint32>(pixels.constBits(), pixels.sizeInBytes() / qsizetype { sizeof(quint32) }, bytes.data());
    return { pixels.width(), pixels.height(), bytes };
}

QDBusArgument& operator<<(QDBusArgument& argument, Picture const& picture)
{
    return writeStructure(argument, picture.width, picture.height, picture.bytes);
}

QDBusArgument const& operator>>(QDBusArgument const& argument, Picture& picture)
{
    return readStructure(argument, picture.width, picture.height, picture.bytes);
}

QDBusArgument& operator<<(QDBusArgument& argument, ToolTip const& toolTip)
{
    return writeStructure(argument, toolTip.iconName, toolTip.pictures, toolTip.title, toolTip.text);
}

QDBusArgument const& operator>>(QDBusArgument const& argument, ToolTip& toolTip)
{
    return readStructure(argument, toolTip.iconName, toolTip.pictures, toolTip.title, toolTip.text);
}

QDBusArgument& operator<<(QDBusArgument& argument, Row const& row)
{
    return writeStructure(argument, row.number, row.properties);
}

QDBusArgument const& operator>>(QDBusArgument const& argument, Row& row)
{
    return readStructure(argument, row.number, row.properties);
}

QDBusArgument& operator<<(QDBusArgument& argument, Layout const& layout)
{
    return writeStructure(argument, layout.row.number, layout.row.properties, layout.rows);
}

QDBusArgument const& operator>>(QDBusArgument const& argument, Layout& layout)
{
    return readStructure(argument, layout.row.number, layout.row.properties, layout.rows);
}

QDBusArgument& operator<<(QDBusArgument& argument, RowEvent const& event)
{
    return writeStructure(argument, event.number, event.name, event.data, event.time);
}

QDBusArgument const& operator>>(QDBusArgument const& argument, RowEvent& event)
{
    return readStructure(argument, event.number, event.name, event.data, event.time);
}

void registerAll()
{
    qDBusRegisterMetaType<Picture>();
    qDBusRegisterMetaType<QList<Picture>>();
    qDBusRegisterMetaType<ToolTip>();
    qDBusRegisterMetaType<Row>();
    qDBusRegisterMetaType<QList<Row>>();
    qDBusRegisterMetaType<Layout>();
    qDBusRegisterMetaType<RowEvent>();
    qDBusRegisterMetaType<QList<RowEvent>>();
    qDBusRegisterMetaType<QList<int>>();
    qDBusRegisterMetaType<QList<QStringList>>();
}

}
