#pragma once

#include "platform/OpenPanel.h"

#include <QCoreApplication>

#include <memory>

class QFileDialog;

namespace Quillory {

// A window-modal file dialog of the toolkit.
class QtOpenPanel final : public OpenPanel {
    Q_DECLARE_TR_FUNCTIONS(QtOpenPanel)
public:
    // `lastFolder` is where one that is told no place begins; it becomes where the user has chosen something.
    explicit QtOpenPanel(std::shared_ptr<QString> lastFolder);
    ~QtOpenPanel() override;
    QtOpenPanel(QtOpenPanel const&) = delete;
    QtOpenPanel& operator=(QtOpenPanel const&) = delete;

    void beginSheetModal(
        std::uint64_t window, OpenPanelSettings const& settings, std::function<void(Response)> ended) override;
    std::optional<QString> url() const override { return m_url; }
    QString failure() const override { return {}; }
    void orderOut() override;
    void cancel() override;

private:
    // Destroyed in a later turn: the answer comes from inside the dialog.
    struct Later {
        void operator()(QFileDialog* dialog) const;
    };

    void finish(int result);

    std::shared_ptr<QString> m_lastFolder;
    std::unique_ptr<QFileDialog, Later> m_dialog;
    std::function<void(Response)> m_ended;
    std::optional<QString> m_url;
};

}
