#pragma once
/// \file
/// Any callable (a lambda with captures, a std::function, a function object)
/// made into an event, kept alive by an owner whose lifetime bounds its own.
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/vcl/core/closure.h"
#include "platform/vcl/core/vcl_api.h"

namespace System {

namespace detail {
///@{
/// The process's cells for kept callables: a cell taken holds callable under
/// a new generation; a cell given back gets another, so that the closures
/// made from it stop calling, and is used again later.
VCL_API TKeptCell* TakeKeptCell(void* callable, unsigned long long& generation);
VCL_API void GiveBackKeptCell(TKeptCell* cell);
///@}
}  // namespace detail

/// Owns callables and hands out closures that call them. Lifetime rule: a
/// closure it gave calls its callable while the keeper lives; once the keeper
/// has gone (or Clear ran) the closure is still set and compares as before,
/// but calling it does nothing and returns a value-initialised R, as an unset
/// closure does. So make the keeper live as long as the events it serves, e.g.
/// a member of the form whose controls use it. Copies of one closure are equal;
/// closures of two Add calls are not, even for the same callable. A kept
/// handler has no published name, so streaming does not write it. Destroy the
/// keeper on the thread that calls its handlers, never from inside one of them.
///
/// \code
///   System::TEventHandlers on;  // outlives the button's clicks
///   int clicks = 0;
///   button->SetOnClick(on.Add([&clicks](System::TObject*) { ++clicks; }));
///   thread->SetOnTerminate(on.Add(std::function<void(System::TObject*)>(report)));
/// \endcode
class TEventHandlers {
 public:
  /// A callable just kept; it becomes the closure of whichever event type it
  /// is given to (any TClosure whose arguments it can be called with).
  template <class F>
  class TKept {
   public:
    template <class R, class... A>
    requires std::is_invocable_r_v<R, F&, A...>
    operator TClosure<R(A...)>() const { return TClosure<R(A...)>::template Kept<F>(cell_, generation_); }

   private:
    friend class TEventHandlers;
    TKept(detail::TKeptCell* cell, unsigned long long generation) : cell_(cell), generation_(generation) {}
    detail::TKeptCell* cell_;
    unsigned long long generation_;
  };

  TEventHandlers() = default;
  TEventHandlers(const TEventHandlers&) = delete;
  TEventHandlers& operator=(const TEventHandlers&) = delete;
  /// Every closure it gave stops calling; then the callables go.
  ~TEventHandlers() { Clear(); }

  /// Keeps a copy of callable (moved when given an rvalue) until the keeper
  /// goes. Not on a temporary keeper: its closures would be dead at once.
  template <class F>
  TKept<std::decay_t<F>> Add(F&& callable) & {
    using Callable = std::decay_t<F>;
    auto held = std::make_unique<Held<Callable>>(std::forward<F>(callable));
    unsigned long long generation = 0;
    detail::TKeptCell* cell = detail::TakeKeptCell(&held->callable, generation);
    kept_.push_back({cell, std::move(held)});
    return {cell, generation};
  }
  template <class F>
  void Add(F&&) && = delete;

  /// Stops every closure given so far and lets their callables go.
  void Clear() {
    std::vector<Entry> gone;
    gone.swap(kept_);
    for (Entry& e : gone) detail::GiveBackKeptCell(e.cell);
    // The callables go only now, when no closure reaches them: a destructor
    // may run code that fires events.
  }

  /// How many callables it keeps.
  int GetCount() const { return static_cast<int>(kept_.size()); }

 private:
  struct HeldBase {
    virtual ~HeldBase() = default;
  };
  template <class F>
  struct Held : HeldBase {
    template <class G>
    explicit Held(G&& g) : callable(std::forward<G>(g)) {}
    F callable;
  };
  struct Entry {
    detail::TKeptCell* cell;
    std::unique_ptr<HeldBase> held;
  };
  std::vector<Entry> kept_;
};

}  // namespace System
