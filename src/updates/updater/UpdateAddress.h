#pragma once

#include <QUrl>

namespace Quillory {

// Whether the updater may ask for an address that the feed, or a server, names: over HTTPS, and without names or
// passwords in it. A feed on this very machine without encryption, as in tests, may name addresses like its own.
bool mayFetch(QUrl const& address, QUrl const& feed);

}
