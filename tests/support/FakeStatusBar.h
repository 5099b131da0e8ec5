#pragma once

#include "platform/StatusBar.h"

#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace Quillory {

// A bar whose user the test is. Draws menus as bars do that answer clicks later: with the callbacks of an item that may
// end meanwhile.
class FakeStatusBar final : public StatusBar {
public:
    std::unique_ptr<StatusItem> statusItem(StatusItem::Target target) override
    {
        return std::make_unique<Item>(*this, std::move(target));
    }

    // In the order in which they came up, by their names.
    QStringList names() const
    {
        QStringList names;
        for (auto const* const item : m_items)
            names.append(item->look.autosaveName);
        return names;
    }
    StatusItemLook const& look(QString const& name) const { return item(name).look; }

    void click(QString const& name) { std::function(item(name).target.clicked)(); }
    StatusMenu menu(QString const& name) const { return item(name).target.menu(); }
    void choose(QString const& name, int number) { std::function(item(name).target.chosen)(number); }

private:
    struct Item final : StatusItem {
        Item(FakeStatusBar& owner, Target itsTarget)
            : bar(owner)
            , target(std::move(itsTarget))
        {
            bar.m_items.push_back(this);
        }
        ~Item() override { std::erase(bar.m_items, this); }
        Item(Item const&) = delete;
        Item& operator=(Item const&) = delete;

        void show(StatusItemLook const& shown) override { look = shown; }

        FakeStatusBar& bar;
        Target target;
        StatusItemLook look;
    };

    Item const& item(QString const& name) const
    {
        return **std::ranges::find(m_items, name, [](auto const* each) { return each->look.autosaveName; });
    }

    std::vector<Item*> m_items;
};

}
