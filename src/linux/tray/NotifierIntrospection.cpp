#include "linux/tray/NotifierIntrospection.h"

namespace Quillory::NotifierIntrospection {

QString item()
{
    return QStringLiteral(R"xml(<interface name="org.kde.StatusNotifierItem">
<property name="Category" type="s" access="read"/>
<property name="Id" type="s" access="read"/>
<property name="Title" type="s" access="read"/>
<property name="Status" type="s" access="read"/>
<property name="WindowId" type="i" access="read"/>
<property name="IconThemePath" type="s" access="read"/>
<property name="IconName" type="s" access="read"/>
<property name="IconPixmap" type="a(iiay)" access="read"/>
<property name="IconAccessibleDesc" type="s" access="read"/>
<property name="OverlayIconName" type="s" access="read"/>
<property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
<property name="AttentionIconName" type="s" access="read"/>
<property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
<property name="AttentionAccessibleDesc" type="s" access="read"/>
<property name="AttentionMovieName" type="s" access="read"/>
<property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
<property name="ItemIsMenu" type="b" access="read"/>
<property name="Menu" type="o" access="read"/>
<method name="Activate">
<arg name="x" type="i" direction="in"/>
<arg name="y" type="i" direction="in"/>
</method>
<method name="SecondaryActivate">
<arg name="x" type="i" direction="in"/>
<arg name="y" type="i" direction="in"/>
</method>
<method name="ContextMenu">
<arg name="x" type="i" direction="in"/>
<arg name="y" type="i" direction="in"/>
</method>
<method name="Scroll">
<arg name="delta" type="i" direction="in"/>
<arg name="orientation" type="s" direction="in"/>
</method>
<method name="ProvideXdgActivationToken">
<arg name="token" type="s" direction="in"/>
</method>
<signal name="NewTitle"/>
<signal name="NewIcon"/>
<signal name="NewAttentionIcon"/>
<signal name="NewToolTip"/>
<signal name="NewStatus"><arg name="status" type="s"/></signal>
</interface>
)xml");
}

QString menu()
{
    return QStringLiteral(R"xml(<interface name="com.canonical.dbusmenu">
<property name="Version" type="u" access="read"/>
<property name="TextDirection" type="s" access="read"/>
<property name="Status" type="s" access="read"/>
<property name="IconThemePath" type="as" access="read"/>
<method name="GetLayout">
<arg name="parentId" type="i" direction="in"/>
<arg name="recursionDepth" type="i" direction="in"/>
<arg name="propertyNames" type="as" direction="in"/>
<arg name="revision" type="u" direction="out"/>
<arg name="layout" type="(ia{sv}av)" direction="out"/>
</method>
<method name="GetGroupProperties">
<arg name="ids" type="ai" direction="in"/>
<arg name="propertyNames" type="as" direction="in"/>
<arg name="properties" type="a(ia{sv})" direction="out"/>
</method>
<method name="GetProperty">
<arg name="id" type="i" direction="in"/>
<arg name="name" type="s" direction="in"/>
<arg name="value" type="v" direction="out"/>
</method>
<method name="Event">
<arg name="id" type="i" direction="in"/>
<arg name="eventId" type="s" direction="in"/>
<arg name="data" type="v" direction="in"/>
<arg name="timestamp" type="u" direction="in"/>
</method>
<method name="EventGroup">
<arg name="events" type="a(isvu)" direction="in"/>
<arg name="idErrors" type="ai" direction="out"/>
</method>
<method name="AboutToShow">
<arg name="id" type="i" direction="in"/>
<arg name="needUpdate" type="b" direction="out"/>
</method>
<method name="AboutToShowGroup">
<arg name="ids" type="ai" direction="in"/>
<arg name="updatesNeeded" type="ai" direction="out"/>
<arg name="idErrors" type="ai" direction="out"/>
</method>
<signal name="LayoutUpdated"><arg name="revision" type="u"/><arg name="parent" type="i"/></signal>
</interface>
)xml");
}

}
