#pragma once

#include <cstdlib>

#include <unistd.h>

namespace Quillory {

// While it lives the process has no more rights than an ordinary user, also where tests run as root: permissions then
// mean something. What the user is to reach must be open to others.
class OrdinaryUser {
public:
    OrdinaryUser()
        : m_isRoot(geteuid() == 0)
    {
        if (m_isRoot)
            m_holds = seteuid(nobody) == 0;
    }
    ~OrdinaryUser()
    {
        if (m_isRoot && seteuid(0) != 0)
            std::abort(); // later tests would run with the wrong rights
    }
    OrdinaryUser(OrdinaryUser const&) = delete;
    OrdinaryUser& operator=(OrdinaryUser const&) = delete;

    bool holds() const { return m_holds; }

private:
    static constexpr uid_t nobody = 65534;
    bool m_isRoot;
    bool m_holds = true;
};

}
