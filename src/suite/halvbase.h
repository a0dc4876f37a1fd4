#pragma once
// Halvbase1.Forms and Halvbase2.Forms — the suite's income-tax objects. The
// component creates them at start-up; the return forms that read its chart live there.

#include <string>

namespace brenlow::Halvbase1 {
class Forms {
public:
    virtual ~Forms() = default;
    virtual std::string Name() const = 0;
};
}  // namespace brenlow::Halvbase1

namespace brenlow::Halvbase2 {
class Forms {
public:
    virtual ~Forms() = default;
    virtual std::string Name() const = 0;
};
}  // namespace brenlow::Halvbase2
