#pragma once
/// \file
/// Bound methods: the type of every event.
#include <atomic>
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

namespace detail {
/// Where a kept callable lives (event_handlers.h): a closure holds the cell
/// and the generation it was made in, and calls only while they still match.
/// Cells are never freed, so a closure outliving its keeper reads one safely.
struct TKeptCell {
  std::atomic<unsigned long long> Generation{0};
  void* Callable = nullptr;
};
}  // namespace detail

class TEventHandlers;

template <class Signature>
class TClosure;

/// A bound method: an object pointer plus a member-function pointer, cheap to
/// copy. It is set exactly when its method part is non-null. Calling an unset
/// closure does nothing and returns a value-initialised R.
///
/// Besides a method it can call a free function (bound here, nothing to keep
/// alive) or any callable a TEventHandlers keeps (see there for its lifetime).
template <class R, class... A>
class TClosure<R(A...)> {
 public:
  TClosure() = default;
  TClosure(std::nullptr_t) {}

  template <class C, class M>
  requires std::is_base_of_v<M, C> TClosure(C* object, R (M::*method)(A...)) { Bind<C>(object, method); }
  template <class C, class M>
  requires std::is_base_of_v<M, C> TClosure(C* object, R (M::*method)(A...) const) { Bind<C>(object, method); }

  /// A free function callable with these arguments; a null one leaves the
  /// closure unset. Equal to another closure of the same function.
  template <class F>
  requires std::is_function_v<F> && std::is_invocable_r_v<R, F*, A...> TClosure(F* function) {
    if (!function) return;
    object_ = reinterpret_cast<void*>(function);
    call_ = [](const TClosure& self, A... args) -> R {
      return Invoke(*reinterpret_cast<F*>(self.object_), static_cast<A>(args)...);
    };
  }

  bool IsSet() const { return call_ != nullptr; }
  explicit operator bool() const { return IsSet(); }
  /// The object part (the "Data" of the bound method).
  void* Data() const { return object_; }

  R operator()(A... args) const {
    if (!call_) return R();
    return call_(*this, static_cast<A>(args)...);
  }

  /// The closure as a method of unknown signature, and back: only a method
  /// taken from a closure of this same signature may come back. Every kind
  /// round-trips; only a bound method has a name that streaming can write.
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

  /// Same object and same method (for a free function, the same function; for
  /// a kept callable, the same TEventHandlers::Add). The call thunk is left
  /// out: each module that binds a method has its own copy of it.
  bool operator==(const TClosure& o) const {
    return object_ == o.object_ && std::memcmp(method_, o.method_, sizeof method_) == 0;
  }

 private:
  friend class TEventHandlers;

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

  // Calls f; a result it gives a void event is dropped.
  template <class F>
  static R Invoke(F& f, A... args) {
    if constexpr (std::is_void_v<R>)
      f(static_cast<A>(args)...);
    else
      return f(static_cast<A>(args)...);
  }

  // A callable of type F kept in cell since generation.
  template <class F>
  static TClosure Kept(detail::TKeptCell* cell, unsigned long long generation) {
    static_assert(sizeof generation <= sizeof method_);
    TClosure c;
    c.object_ = cell;
    std::memcpy(c.method_, &generation, sizeof generation);
    c.call_ = [](const TClosure& self, A... args) -> R {
      const auto* kept = static_cast<const detail::TKeptCell*>(self.object_);
      unsigned long long made;
      std::memcpy(&made, self.method_, sizeof made);
      if (kept->Generation.load(std::memory_order_acquire) != made) return R();  // its keeper has gone
      return Invoke(*static_cast<F*>(kept->Callable), static_cast<A>(args)...);
    };
    return c;
  }

  void* object_ = nullptr;
  R (*call_)(const TClosure&, A...) = nullptr;
  alignas(void*) unsigned char method_[2 * sizeof(void*)] = {};
};

static_assert(std::is_trivially_copyable_v<TClosure<void()>>, "events are copied as plain bytes");

}  // namespace System
