#include "app/command/RunningProgram.h"

#include <cstdlib>
#include <string_view>

namespace Quillory {

namespace {

constexpr auto name = "org.quillory.Quillory";
constexpr auto objectPath = "/org/quillory/Quillory";
constexpr int answerTime = 5000; // milliseconds

class Error {
public:
    Error() { dbus_error_init(&m_error); }
    ~Error() { dbus_error_free(&m_error); }
    Error(Error const&) = delete;
    Error& operator=(Error const&) = delete;

    operator DBusError*() { return &m_error; }
    bool is(char const* errorName) const { return dbus_error_has_name(&m_error, errorName) != 0; }
    std::string sentence() const { return m_error.message ? m_error.message : m_error.name; }

private:
    DBusError m_error;
};

struct Unref {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using Message = std::unique_ptr<DBusMessage, Unref>;

void appendText(DBusMessageIter& to, char const* text)
{
    dbus_message_iter_append_basic(&to, DBUS_TYPE_STRING, static_cast<void const*>(&text));
}

void appendVariant(DBusMessageIter& to, char const* text)
{
    DBusMessageIter variant;
    dbus_message_iter_open_container(&to, DBUS_TYPE_VARIANT, DBUS_TYPE_STRING_AS_STRING, &variant);
    appendText(variant, text);
    dbus_message_iter_close_container(&to, &variant);
}

char const* fromEnvironment(char const* variable)
{
    return std::getenv(variable); // NOLINT(concurrency-mt-unsafe): there is one thread
}

// The desktop's id of the key or click that brought this process about; null where it gave none.
char const* startupId()
{
    auto const* id = fromEnvironment("DESKTOP_STARTUP_ID");
    if (!id)
        id = fromEnvironment("XDG_ACTIVATION_TOKEN");
    return id && *id && dbus_validate_utf8(id, nullptr) ? id : nullptr;
}

void appendPlatformData(DBusMessageIter& to)
{
    DBusMessageIter data;
    dbus_message_iter_open_container(&to, DBUS_TYPE_ARRAY, "{sv}", &data);
    if (auto const* const id = startupId()) {
        DBusMessageIter entry;
        dbus_message_iter_open_container(&data, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
        appendText(entry, "desktop-startup-id");
        appendVariant(entry, id);
        dbus_message_iter_close_container(&data, &entry);
    }
    dbus_message_iter_close_container(&to, &data);
}

void appendAction(DBusMessageIter& to, Command const& command)
{
    DBusMessageIter parameters;
    appendText(to, command.action);
    dbus_message_iter_open_container(&to, DBUS_TYPE_ARRAY, DBUS_TYPE_VARIANT_AS_STRING, &parameters);
    if (command.parameter)
        appendVariant(parameters, command.parameter);
    dbus_message_iter_close_container(&to, &parameters);
}

Message callOf(Command const& command)
{
    bool const isAction = command.kind == Command::Kind::action;
    Message call(dbus_message_new_method_call(
        name, objectPath, "org.freedesktop.Application", isAction ? "ActivateAction" : "Activate"));
    DBusMessageIter arguments;
    dbus_message_iter_init_append(call.get(), &arguments);
    if (isAction)
        appendAction(arguments, command);
    appendPlatformData(arguments);
    dbus_message_set_auto_start(call.get(), 0);
    return call;
}

}

void RunningProgram::Close::operator()(DBusConnection* bus) const
{
    dbus_connection_close(bus);
    dbus_connection_unref(bus);
}

RunningProgram::RunningProgram()
    : m_bus(dbus_bus_get_private(DBUS_BUS_SESSION, nullptr))
{
    if (m_bus)
        dbus_connection_set_exit_on_disconnect(m_bus.get(), 0);
}

bool RunningProgram::canAsk(Command const& command)
{
    return !command.parameter || dbus_validate_utf8(command.parameter, nullptr);
}

bool RunningProgram::isThere() const
{
    return dbus_bus_name_has_owner(m_bus.get(), name, nullptr) != 0;
}

RunningProgram::Reply RunningProgram::ask(Command const& command) const
{
    if (!m_bus)
        return { Answer::absent };
    if (command.kind == Command::Kind::beThere)
        return { isThere() ? Answer::taken : Answer::absent };
    Error error;
    Message const reply(
        dbus_connection_send_with_reply_and_block(m_bus.get(), callOf(command).get(), answerTime, error));
    if (reply)
        return { Answer::taken };
    if (error.is(DBUS_ERROR_INVALID_ARGS))
        return { Answer::misused };
    if (error.is(DBUS_ERROR_FAILED))
        return { Answer::refused, error.sentence() };
    // Also said of one that ends while it is asked.
    return { error.is(DBUS_ERROR_NO_REPLY) && isThere() ? Answer::none : Answer::absent };
}

}
