#pragma once

#include <QProperty>

#include <concepts>
#include <utility>

namespace Quillory {

// A property that everybody can read and observe. Its owner assigns it, since more hangs on it; where there is a
// `Writer`, that class assigns it as well and says so: `store.findStatus.assignAs<NativeReader>(status)`.
template<typename Value, typename Owner, typename Writer = void>
class OwnedProperty : private QProperty<Value> {
public:
    OwnedProperty() = default;
    explicit OwnedProperty(Value const& start)
        : QProperty<Value>(start)
    {
    }

    using QProperty<Value>::value;
    using QProperty<Value>::operator typename QProperty<Value>::parameter_type;
    using QProperty<Value>::addNotifier;
    using QProperty<Value>::onValueChanged;
    using QProperty<Value>::subscribe;

    template<typename Assigner>
        requires std::same_as<Assigner, Writer>
    void assignAs(Value newValue)
    {
        setValue(std::move(newValue));
    }

private:
    friend Owner;
    using QProperty<Value>::setValue;
    using QProperty<Value>::setValueBypassingBindings;
};

}
