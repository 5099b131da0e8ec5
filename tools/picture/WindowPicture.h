#pragma once

#include "reader/ReaderView.h"
#include "support/FakeLibraryServices.h"

#include <QImage>

#include <expected>

namespace Quillory {

// The reader's whole window over a folder, brought into a state by steps as a user would take them.
class WindowPicture {
public:
    WindowPicture(QString const& folder, QSize size);

    // `press NAME` clicks a button, `hover NAME` rests the pointer on a control, by its accessible name or its text;
    // `key Ctrl+F`, `type TEXT`, `select SHEET`, `say MESSAGE`, `choose ROW` in the menu; `write FILE TEXT` saves in the
    // folder. The error is a sentence.
    std::expected<void, QString> take(QString const& step);

    // The window, with the menus and the hover help over it.
    QImage draw() const;

private:
    QWidget* find(QString const& name) const;
    void settle();
    void press(QString const& keys);
    void rest(QWidget& widget);
    void choose(int row);
    void write(QString const& file, QString const& text);

    FakeLibraryServices m_services;
    NotificationCenter m_notifications;
    QString m_folder;
    LibraryStore m_store { m_services.services(), LibraryStore::RestoreFolder::no };
    ReaderView m_view { m_store,
        { .executor = m_services.executor,
            .clipboard = m_services.clipboard,
            .notifications = m_notifications,
            .announcements = m_services.announcements,
            .openSettings = [] {},
            .howToCall = [] { return QStringList { QStringLiteral("Ctrl+Alt+K opens and closes the reader.") }; } },
        [] {} };
};

}
