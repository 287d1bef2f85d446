// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace corvane {

// Owns an open file descriptor and closes it once; remembers the first error of closing, which for
// a written file is a write error the file system reported late.
class Descriptor {
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int get() const { return m_descriptor; }
    int close()
    {
        if (m_descriptor < 0)
            return 0;
        const int result = ::close(std::exchange(m_descriptor, -1));
        return result == 0 ? 0 : errno;
    }

private:
    int m_descriptor;
};

} // namespace corvane
