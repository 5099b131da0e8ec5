#include "reader/ReaderWindowState.h"

#include "library/LibraryError.h"
#include "text/OneLine.h"
#include "text/TextOrder.h"

#include <algorithm>

namespace Quillory {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(ReaderView)
};

QStringList linesOf(QStringList const& warnings)
{
    constexpr auto shown = ReaderWindowState::warningsShown;
    auto lines = warnings.first(std::min(shown, warnings.size()));
    if (warnings.size() > shown)
        lines.append(Texts::tr("%n more icon warnings.", nullptr, static_cast<int>(warnings.size() - shown)));
    return lines;
}

}

ReaderWindowState ReaderWindowState::of(LibraryStore const& store)
{
    ReaderWindowState state;
    state.learningModeEnabled = store.learningModeEnabled;
    state.textSize = store.textSize;
    state.findVisible = store.findVisible;
    state.findQuery = store.findQuery;
    state.findStatus = store.findStatus;
    state.message = store.message;
    state.remedy = store.messageRemedy;
    state.busy = store.busy;
    state.hasFolder = store.folder.value().has_value();
    state.hasFilePanel = store.filePanel.value() != nullptr;

    auto const& all = store.sheets.value();
    auto const* const sheet = store.selectedSheet();
    auto const isSelected = [&](Sheet const* end) { return end ? sheet == end : !store.selectedID.value(); };
    state.canGoBack = !isSelected(all.isEmpty() ? nullptr : &all.first());
    state.canGoForward = !isSelected(all.isEmpty() ? nullptr : &all.last());
    state.format = sheet && sheet->shortcuts ? Texts::tr("Quillory JSON · format checked")
                                             : Texts::tr("Local Markdown · viewing only");
    state.title = sheet ? oneLine(sheet->title) : QStringLiteral("Quillory");
    if (sheet) {
        state.takeSheet(*sheet);
        auto const isIt = [&](QString const& pin) { return canonicallyEqual(pin, sheet->id); };
        state.isPinned = std::ranges::any_of(store.pinnedIDs.value(), isIt);
    } else if (state.hasFolder) {
        // Whether a folder has sheets is known when it has been read.
        state.content = state.busy || store.isLoadDue() ? Content::notYetKnown : Content::noSheets;
    }
    return state;
}

void ReaderWindowState::takeSheet(Sheet const& sheet)
{
    content = Content::sheet;
    iconWarnings = linesOf(sheet.iconWarnings);
    if (sheet.error) {
        error = *sheet.error;
        if (showsLastReadable(sheet))
            lastReadable = Texts::tr("Showing the last readable version.");
    }
    if (!sheet.shortcuts || !sheet.shortcuts->icon)
        return;
    icon.emplace();
    if (auto const image = sheet.images.constFind(*sheet.shortcuts->icon); image != sheet.images.cend())
        icon->image = *image;
}

}
