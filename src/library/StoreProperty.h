#pragma once

#include <QProperty>

namespace Quillory {

// A property that everybody can read and observe and that only LibraryStore assigns, since more hangs on it.
template<typename Value>
class StoreProperty : private QProperty<Value> {
public:
    StoreProperty() = default;
    explicit StoreProperty(Value const& start)
        : QProperty<Value>(start)
    {
    }

    using QProperty<Value>::value;
    using QProperty<Value>::operator typename QProperty<Value>::parameter_type;
    using QProperty<Value>::addNotifier;
    using QProperty<Value>::onValueChanged;
    using QProperty<Value>::subscribe;

private:
    friend class LibraryStore;
    using QProperty<Value>::setValue;
    using QProperty<Value>::setValueBypassingBindings;
};

}
