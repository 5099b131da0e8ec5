#pragma once

#include "words/Wording.h"

namespace Quillory {

// The words in which the program speaks while this lives: those of the user's language as far as there are any, over
// the wording for this desktop. QUILLORY_WORDING=plain leaves the wording out. The application object exists already
// and outlives it.
class InstalledWords {
public:
    // Of the resources that `quillory_words` adds to a program.
    InstalledWords();
    ~InstalledWords();
    InstalledWords(InstalledWords const&) = delete;
    InstalledWords& operator=(InstalledWords const&) = delete;

private:
    Wording m_wording;
    QTranslator m_toolkit; // what its own dialogs say
    QTranslator m_language;
};

}
