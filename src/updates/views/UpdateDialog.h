#pragma once

#include "platform/Announcements.h"
#include "platform/Workspace.h"
#include "updates/updater/UpdateWindow.h"

#include <QDialog>

#include <functional>

class QDialogButtonBox;
class QLabel;
class QProgressBar;
class QTextBrowser;

namespace Quillory {

// The updater's window. It comes to the front where the user asked for it; Escape never installs. GUI thread only.
class UpdateDialog final : public QDialog, public UpdateWindow {
    Q_OBJECT
public:
    // Both outlive it.
    UpdateDialog(Workspace& workspace, Announcements& announcements);
    ~UpdateDialog() override;

    void showOffer(Offer const& offer, std::function<void(Choice)> chosen) override;
    void showProgress(std::int64_t size, std::function<void()> stop) override;
    void setProgress(std::int64_t received) override;
    void showInstalling() override;
    void showMessage(QString const& sentence, Tone tone) override;
    void bringToFront() override;
    void close() override;

    void reject() override;

private:
    enum class Content { offer, progress, installing, message };

    // When something is first shown: most runs of the program show nothing here.
    void build();
    void present(Content content, QString const& title, QString const& text);
    void addButton(QString const& label, int role, std::function<void()> pressed);
    void removeButtons();
    void answer(std::function<void()> const& pressed);

    Workspace& m_workspace;
    Announcements& m_announcements;
    QLabel* m_title = nullptr;
    QLabel* m_text = nullptr;
    QTextBrowser* m_notes = nullptr;
    QProgressBar* m_progress = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
    std::function<void()> m_rejected; // what a closed window means
    std::int64_t m_size = 0;
};

}
