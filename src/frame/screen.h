#pragma once
// What every screen of the component is to the frame: something with a caption
// that the host shows in its own window.

#include <string>

namespace brenlow::frame {

class Screen {
public:
    virtual ~Screen() = default;
    virtual std::string Caption() const = 0;
};

}  // namespace brenlow::frame
