#pragma once

#include "image/allocate.h"
#include "prefs/end_run.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace velmorant
{

// Zeroed room for `count` elements, 1 or more, for the time of one call. Where there is none, prints
// the complaint as a line and ends the process with status -1.
template <class Element>
Block<Element> allocate_internal_buffer(std::size_t count, const char *complaint)
{
    void *block = std::calloc(count, sizeof(Element));
    if (block == nullptr) {
        std::puts(complaint);
        end_run(-1);
    }
    return Block<Element>(static_cast<Element *>(block));
}

} // namespace velmorant
