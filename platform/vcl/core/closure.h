#pragma once
/// \file
/// Bound methods: the type of every event.
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace System {

/// A bound method of any signature, as published-property code handles it:
/// the same bytes as a TClosure, which converts to and from it.
struct TMethod {
  void* Data = nullptr;
  void* Call = nullptr;
  alignas(void*) unsigned char Code[2 * sizeof(void*)] = {};
  bool IsSet() const { return Call != nullptr; }
};

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

  /// The closure as a method of unknown signature, and back: only a method
  /// taken from a closure of this same signature may come back.
  TMethod ToMethod() const {
    TMethod m;
    m.Data = object_;
    m.Call = reinterpret_cast<void*>(call_);
    std::memcpy(m.Code, method_, sizeof method_);
    return m;
  }
  static TClosure FromMethod(const TMethod& m) {
    TClosure c;
    c.object_ = m.Data;
    c.call_ = reinterpret_cast<decltype(c.call_)>(m.Call);
    std::memcpy(c.method_, m.Code, sizeof c.method_);
    return c;
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
