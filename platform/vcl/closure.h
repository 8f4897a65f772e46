#pragma once
/// \file
/// Bound methods: the type of every event.
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace System {

template <class Signature>
class TClosure;

/// A bound method: an object pointer plus a member-function pointer, cheap to
/// copy. It is set exactly when its method part is non-null. Calling an unset
/// closure does nothing and returns a value-initialised R.
template <class R, class... A>
class TClosure<R(A...)> {
 public:
  TClosure() = default;
  TClosure(std::nullptr_t) {}

  template <class C, class M>
  requires std::is_base_of_v<M, C> TClosure(C* object, R (M::*method)(A...)) { Bind<C>(object, method); }
  template <class C, class M>
  requires std::is_base_of_v<M, C> TClosure(C* object, R (M::*method)(A...) const) { Bind<C>(object, method); }

  bool IsSet() const { return call_ != nullptr; }
  explicit operator bool() const { return IsSet(); }
  /// The object part (the "Data" of the bound method).
  void* Data() const { return object_; }

  R operator()(A... args) const {
    if (!call_) return R();
    return call_(*this, static_cast<A>(args)...);
  }

  /// Same object and same method. The call thunk is left out: each module that
  /// binds a method has its own copy of it.
  bool operator==(const TClosure& o) const {
    return object_ == o.object_ && std::memcmp(method_, o.method_, sizeof method_) == 0;
  }

 private:
  template <class C, class P>
  void Bind(C* object, P method) {
    static_assert(sizeof(P) <= sizeof(method_), "member pointer larger than expected");
    if (!method) return;
    object_ = object;
    std::memcpy(method_, &method, sizeof(P));
    call_ = [](const TClosure& self, A... args) -> R {
      P m;
      std::memcpy(&m, self.method_, sizeof(P));
      return (static_cast<C*>(self.object_)->*m)(static_cast<A>(args)...);
    };
  }

  void* object_ = nullptr;
  R (*call_)(const TClosure&, A...) = nullptr;
  alignas(void*) unsigned char method_[2 * sizeof(void*)] = {};
};

}  // namespace System
