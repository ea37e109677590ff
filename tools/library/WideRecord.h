// SPDX-License-Identifier: MIT
//
// A zero-filled record of the library with room for more elements than its declaration has. The
// library fills as many elements as the firmware says there are.
#ifndef TALVANE_TOOLS_LIBRARY_WIDERECORD_H
#define TALVANE_TOOLS_LIBRARY_WIDERECORD_H

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

namespace tool {

template <class Record, class Element>
class WideRecord {
    static_assert(std::is_trivially_copyable_v<Record> && std::is_trivially_copyable_v<Element>);

public:
    // `elementsAt` is the offset of the element array. `capacity` is at least its declared length.
    WideRecord(std::size_t elementsAt, std::size_t capacity)
        : elementsAt_(elementsAt), bytes_(elementsAt + capacity * sizeof(Element)) {}

    void* Data() { return bytes_.data(); }

    Record Head() const {
        Record head;
        std::memcpy(&head, bytes_.data(), sizeof head);
        return head;
    }

    // The first `count` elements; `count` is at most the capacity.
    std::vector<Element> Elements(int count) const {
        std::vector<Element> elements(static_cast<std::size_t>(count));
        if (count != 0)
            std::memcpy(elements.data(), bytes_.data() + elementsAt_,
                        elements.size() * sizeof(Element));
        return elements;
    }

private:
    std::size_t elementsAt_;
    std::vector<unsigned char> bytes_;
};

}  // namespace tool

#endif
