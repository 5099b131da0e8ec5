#pragma once

#include "platform/KeyboardLayout.h"

#include <map>
#include <utility>

namespace Quillory {

// A layout that a test writes down. The symbol of a letter or digit is named after it.
class FakeKeyboardLayout final : public KeyboardLayout {
public:
    explicit FakeKeyboardLayout(std::map<std::uint16_t, QString> characters)
        : m_characters(std::move(characters))
    {
    }

    std::optional<QString> character(std::uint16_t keyCode) const override
    {
        auto const found = m_characters.find(keyCode);
        return found == m_characters.end() ? std::nullopt : std::optional(found->second);
    }

    std::optional<std::uint16_t> keyCode(QString const& symbolName) const override
    {
        for (auto const& [code, character] : m_characters) {
            if (character == symbolName)
                return code;
        }
        return std::nullopt;
    }

    std::optional<QString> symbolName(std::uint16_t keyCode) const override { return character(keyCode); }

    Registration observeChanges(std::function<void()>) override { return {}; }

private:
    std::map<std::uint16_t, QString> m_characters;
};

}
