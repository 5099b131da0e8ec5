#include "Updates.h"

// In a build without a feed.
namespace Quillory {

struct Updates::Parts { };

Updates::Updates(Services const&)
{
}

Updates::~Updates() = default;

Updater::Make Updates::make()
{
    return nullptr;
}

}
