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
    QtOpenPanel();
    ~QtOpenPanel() override;
    QtOpenPanel(QtOpenPanel const&) = delete;
    QtOpenPanel& operator=(QtOpenPanel const&) = delete;

    void beginSheetModal(
        std::uint64_t window, OpenPanelSettings const& settings, std::function<void(Response)> ended) override;
    std::optional<QString> url() const override { return m_url; }
    void orderOut() override;
    void cancel() override;

private:
    // Destroyed in a later turn: the answer comes from inside the dialog.
    struct Later {
        void operator()(QFileDialog* dialog) const;
    };

    void finish(int result);

    std::unique_ptr<QFileDialog, Later> m_dialog;
    std::function<void(Response)> m_ended;
    std::optional<QString> m_url;
};

}
