#pragma once

#include <QString>

#include <expected>
#include <functional>

namespace Quillory {

// Whether the desktop starts the program with the user's session. Main thread only.
class Autostart {
public:
    enum class State { off, on };
    // Nothing when it is as asked, or why it is not, as a sentence for the user.
    using Answered = std::move_only_function<void(std::expected<void, QString> const&)>;

    virtual ~Autostart() = default;

    // As the desktop has it now, whoever made it so.
    virtual State state() const = 0;
    // Calls `answered` once, in this call or later; never after the program's end.
    virtual void ask(State wanted, Answered answered) = 0;
};

}
