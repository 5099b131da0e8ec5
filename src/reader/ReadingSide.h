#pragma once

#include "reader/BannerRoom.h"
#include "reader/NativeReader.h"
#include "reader/ReaderWindowState.h"

#include <QProperty>
#include <QWidget>

#include <functional>
#include <memory>

namespace Quillory {

class CopyPill;
class EmptyState;
class FindBar;
class LearningModeBar;
class MessageBar;
class SheetHeader;
class WarningBar;

// The selected sheet under its header and its banners, or what stands in its place. GUI thread only.
class ReadingSide : public QWidget {
    Q_OBJECT
public:
    // Store and services outlive it; `dismiss` closes the reader.
    ReadingSide(LibraryStore& store, ReaderServices const& services, std::function<void()> dismiss, QWidget* parent);
    ~ReadingSide() override;

    void refresh(ReaderWindowState const& state);
    // The title's size follows the text and the desktop.
    void refreshFonts(double textSize);

    // The text, or without a sheet the way to one.
    void takeKeyboard();

    NativeReader& reader() const { return *m_reader; }
    FindBar& findBar() const { return *m_find; }
    SheetHeader& header() const { return *m_header; }
    EmptyState& emptyState() const { return *m_emptyState; }
    MessageBar& messageBar() const { return *m_message; }

protected:
    bool event(QEvent* event) override;

private:
    void shareRoom();
    WarningBar* makeErrorBar(Announcements& announcements);
    void markScrolled();

    LibraryStore& m_store;
    SheetHeader* m_header;
    LearningModeBar* m_learningMode;
    FindBar* m_find;
    MessageBar* m_message;
    WarningBar* m_iconWarnings;
    WarningBar* m_error;
    EmptyState* m_emptyState;
    BannerRoom m_room;
    std::unique_ptr<NativeReader> m_reader;
    CopyPill* m_copyPill;
    QPropertyNotifier m_copyObservation;
};

}
