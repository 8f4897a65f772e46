// Change tracking: the notifications each sequence of calls raises, with and
// without LockOnChange, and the one deleting notification.
#include "velkin/core/h_chobj.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "platform/vcl/vcl.h"

namespace {

// Records every notification as "Name:lock count at that moment".
class Recorder : public TObject {
 public:
  explicit Recorder(HChangableObject* subject) : subject_(subject) {
    subject->SetOnChanging(TNotifyEvent(this, &Recorder::Changing));
    subject->SetOnChanged(TNotifyEvent(this, &Recorder::Changed));
    subject->SetOnDeleting(TNotifyEvent(this, &Recorder::Deleting));
    subject->SetOnLock(TNotifyEvent(this, &Recorder::Locked));
    subject->SetOnUnlock(HUnlockEvent(this, &Recorder::Unlocked));
    if (auto* sizable = dynamic_cast<HSizableObject*>(subject))
      sizable->SetOnDirtied(TNotifyEvent(this, &Recorder::Dirtied));
  }
  std::string events;

 private:
  void Add(TObject* sender, const std::string& name) {
    events += (events.empty() ? "" : " ") + name + (sender == subject_ ? "" : "(wrong sender)");
    // The count is unreadable once the object is being torn down.
    if (name != "Deleting") events += ":" + std::to_string(subject_->GetLockCount());
  }
  void Changing(TObject* sender) { Add(sender, "Changing"); }
  void Changed(TObject* sender) { Add(sender, "Changed"); }
  void Deleting(TObject* sender) { Add(sender, "Deleting"); }
  void Locked(TObject* sender) { Add(sender, "Lock"); }
  void Dirtied(TObject* sender) { Add(sender, "Dirtied"); }
  void Unlocked(TObject* sender, bool silent) { Add(sender, silent ? "SilentUnlock" : "Unlock"); }

  HChangableObject* subject_;
};

struct Case {
  bool sizable, lockOnChange;
  const char *script, *events, *state;  // state: lock count, then the flags that are set
};

const Case cases[] = {
    {false, false, "Lock Lock Changed Unlock Unlock", "Lock:1 Lock:2 Unlock:1 Changed:0 Unlock:0", "0 modified"},
    {false, false, "Lock Unlock", "Lock:1 Changed:0 Unlock:0", "0 modified"},
    {false, false, "Lock Changed SilentUnlock", "Lock:1 SilentUnlock:0", "0 modified"},
    {false, false, "Lock Lock SilentUnlock Unlock", "Lock:1 Lock:2 SilentUnlock:1 Changed:0 Unlock:0", "0 modified"},
    {false, false, "Unlock SilentUnlock", "", "0"},
    {false, false, "Lock Changing", "Lock:1", "1 locked"},
    {false, false, "Changing Changed", "Changing:0 Changed:0", "0 modified"},
    {false, true, "Changing Changed", "Changing:0 Lock:1 Unlock:0 Changed:0", "0 modified"},
    {false, true, "Lock Changing Changed Unlock", "Lock:1 Lock:2 Unlock:1 Unlock:0", "0 modified"},
    {true, false, "Lock Unlock", "Lock:1 Dirtied:0 Unlock:0", "0 modified dirty"},
    {true, false, "Lock Unlock Clean", "Lock:1 Dirtied:0 Unlock:0", "0"},
    {true, false, "Lock Lock Dirtied Unlock Unlock", "Lock:1 Lock:2 Unlock:1 Dirtied:0 Unlock:0", "0 modified dirty"},
    {true, false, "Lock Changed Unlock", "Lock:1 Dirtied:0 Unlock:0", "0 modified dirty"},
    {true, false, "Changed", "Changed:0", "0 modified"},
    {true, false, "Lock Dirtied SilentUnlock", "Lock:1 SilentUnlock:0", "0 modified dirty"},
    {true, true, "Changing Dirtied", "Changing:0 Lock:1 Unlock:0 Dirtied:0", "0 modified dirty"},
};

TEST(HChangableObject, NotificationSequences) {
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.sizable ? "sizable: " : "plain: ") + c.script +
                 (c.lockOnChange ? " (lock on change)" : ""));
    HChangableObject plain;
    HSizableObject sizable;
    HChangableObject& o = c.sizable ? sizable : plain;
    o.SetLockOnChange(c.lockOnChange);
    Recorder recorder(&o);
    std::istringstream steps(c.script);
    for (std::string step; steps >> step;) {
      if (step == "Lock") o.Lock();
      if (step == "Unlock") o.Unlock();
      if (step == "SilentUnlock") o.SilentUnlock();
      if (step == "Changing") o.Changing();
      if (step == "Changed") o.Changed();
      if (step == "Dirtied") sizable.Dirtied();
      if (step == "Clean") sizable.SetDirty(false);
    }
    EXPECT_EQ(c.events, recorder.events);
    EXPECT_EQ(c.state, std::to_string(o.GetLockCount()) + (o.GetLocked() ? " locked" : "") +
                           (o.GetModified() ? " modified" : "") + (sizable.GetDirty() ? " dirty" : ""));
    o.SetOnDeleting(nullptr);  // the recorder goes first
  }
}

// A subclass listening to its own deletion through the overridable step.
class Subclass : public HSizableObject {
 public:
  explicit Subclass(std::string* log) : log_(log) {}

 protected:
  void DoDeleting() override {
    *log_ += "DoDeleting " + name_;  // a subclass member: valid only while the whole object exists
    HSizableObject::DoDeleting();
  }

 private:
  std::string* log_;
  std::string name_ = "subclass";
};

TEST(HChangableObject, DestructionFiresDeletingOnce) {
  std::string log;
  Subclass* o = new Subclass(&log);
  Recorder recorder(o);
  delete o;  // reaches the override before any destructor ran
  EXPECT_EQ("DoDeleting subclass", log);
  EXPECT_EQ("Deleting", recorder.events);
}

}  // namespace
