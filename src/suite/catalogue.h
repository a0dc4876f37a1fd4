#pragma once
// The catalogue of sibling components: each is created by its class identifier
// ("TarrowBase.ClsMain", "Kestbase.Forms", "Ostikreport.ClsMain", "Halvbase1.Forms",
// "Halvbase2.Forms", "Kestsched.Forms"). The suite's defaults are registered by
// register_defaults; tests register their own.

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace brenlow::suite {

class Catalogue {
public:
    using Factory = std::function<std::shared_ptr<void>()>;

    // Registers (or replaces) the factory of a class identifier.
    void add(std::string class_id, Factory factory);
    template <class T>
    void add_type(std::string class_id, std::function<std::shared_ptr<T>()> make) {
        add(std::move(class_id), [make] { return std::static_pointer_cast<void>(make()); });
    }
    bool has(std::string_view class_id) const;

    // CreateObject: throws std::runtime_error "ActiveX component can't create object: <id>"
    // when the identifier is unknown.
    template <class T>
    std::shared_ptr<T> create(std::string_view class_id) const {
        return std::static_pointer_cast<T>(create_raw(class_id));
    }

private:
    std::shared_ptr<void> create_raw(std::string_view class_id) const;
    std::map<std::string, Factory, std::less<>> factories_;
};

}  // namespace brenlow::suite
