#include "suite/catalogue.h"

#include <stdexcept>

namespace brenlow::suite {

void Catalogue::add(std::string class_id, Factory factory) {
    factories_[std::move(class_id)] = std::move(factory);
}

bool Catalogue::has(std::string_view class_id) const {
    return factories_.find(class_id) != factories_.end();
}

std::shared_ptr<void> Catalogue::create_raw(std::string_view class_id) const {
    const auto it = factories_.find(class_id);
    if (it == factories_.end())
        throw std::runtime_error("ActiveX component can't create object: " + std::string(class_id));
    return it->second();
}

}  // namespace brenlow::suite
