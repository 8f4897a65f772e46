#pragma once
/// \file
/// Hearing that a component is freed.
#include <functional>

#include "platform/vcl/core/component.h"
#include "velkin/velkin_api.h"

/// Calls back when a component it watches is freed, so that an object
/// holding raw pointers to components (a record, an adapter) forgets them in
/// time instead of keeping them dangling.
class VELKIN_API HFreeWatch : public Classes::TComponent {
 public:
  /// Called with the component being freed.
  using TFreedEvent = std::function<void(Classes::TComponent* component)>;

  explicit HFreeWatch(TFreedEvent freed) : TComponent(nullptr), freed_(std::move(freed)) {}

  ///@{
  /// Starts and stops listening to a component; null is ignored.
  void Watch(Classes::TComponent* component) {
    if (component) component->FreeNotification(this);
  }
  void Unwatch(Classes::TComponent* component) {
    if (component) component->RemoveFreeNotification(this);
  }
  ///@}

 protected:
  void Notification(Classes::TComponent* component, Classes::TOperation operation) override {
    TComponent::Notification(component, operation);
    if (operation == Classes::opRemove && component) freed_(component);
  }

 private:
  TFreedEvent freed_;
};
