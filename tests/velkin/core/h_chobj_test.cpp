#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "platform/vcl/vcl.h"
#include "velkin/core/h_chobj.h"

namespace {

// Records every notification as "Name:lock count at that moment".
class Recorder : public TObject {
 public:
  explicit Recorder(HChangableObject* subject) : subject_(subject) {
    subject->OnChanging = TNotifyEvent(this, &Recorder::Changing);
    subject->OnChanged = TNotifyEvent(this, &Recorder::Changed);
    subject->OnDeleting = TNotifyEvent(this, &Recorder::Deleting);
    subject->OnLock = TNotifyEvent(this, &Recorder::Locked);
    subject->OnUnlock = HUnlockEvent(this, &Recorder::Unlocked);
    if (auto* sizable = dynamic_cast<HSizableObject*>(subject))
      sizable->OnDirtied = TNotifyEvent(this, &Recorder::Dirtied);
  }

  std::string Events() const { return events_.str(); }
  void Clear() { events_.str(""); }

 private:
  void Add(TObject* sender, const char* name) {
    if (!events_.str().empty()) events_ << ' ';
    events_ << name;
    if (sender != subject_) events_ << "(wrong sender)";
    // The count is unreadable once the object is being torn down.
    if (std::string(name) != "Deleting") events_ << ':' << subject_->GetLockCount();
  }
  void Changing(TObject* sender) { Add(sender, "Changing"); }
  void Changed(TObject* sender) { Add(sender, "Changed"); }
  void Deleting(TObject* sender) { Add(sender, "Deleting"); }
  void Locked(TObject* sender) { Add(sender, "Lock"); }
  void Unlocked(TObject* sender, bool silent) { Add(sender, silent ? "SilentUnlock" : "Unlock"); }
  void Dirtied(TObject* sender) { Add(sender, "Dirtied"); }

  HChangableObject* subject_;
  std::ostringstream events_;
};

void RunScript(HChangableObject& o, const std::string& script) {
  std::istringstream steps(script);
  for (std::string step; steps >> step;) {
    auto* sizable = dynamic_cast<HSizableObject*>(&o);
    if (step == "Lock")
      o.Lock();
    else if (step == "Unlock")
      o.Unlock();
    else if (step == "SilentUnlock")
      o.SilentUnlock();
    else if (step == "Changing")
      o.Changing();
    else if (step == "Changed")
      o.Changed();
    else if (step == "Dirtied" && sizable)
      sizable->Dirtied();
    else if (step == "Clean" && sizable)
      sizable->SetDirty(false);
    else
      FAIL() << "bad script step " << step;
  }
}

struct Case {
  const char* title;
  bool sizable;
  bool lockOnChange;
  const char* script;
  const char* events;
  int lockCount;
  bool modified;
  bool dirty;
};

const Case cases[] = {
    {"nested batch", false, false, "Lock Lock Changed Unlock Unlock", "Lock:1 Lock:2 Unlock:1 Changed:0 Unlock:0", 0,
     true, false},
    {"empty batch still notifies", false, false, "Lock Unlock", "Lock:1 Changed:0 Unlock:0", 0, true, false},
    {"silent unlock", false, false, "Lock Changed SilentUnlock", "Lock:1 SilentUnlock:0", 0, true, false},
    {"inner silent unlock keeps the final notification", false, false, "Lock Lock SilentUnlock Unlock",
     "Lock:1 Lock:2 SilentUnlock:1 Changed:0 Unlock:0", 0, true, false},
    {"unlock when not locked", false, false, "Unlock SilentUnlock", "", 0, false, false},
    {"changing while locked", false, false, "Lock Changing", "Lock:1", 1, false, false},
    {"unlocked change notifies at once", false, false, "Changing Changed", "Changing:0 Changed:0", 0, true, false},
    {"lock on change", false, true, "Changing Changed", "Changing:0 Lock:1 Unlock:0 Changed:0", 0, true, false},
    {"lock on change inside a batch", false, true, "Lock Changing Changed Unlock", "Lock:1 Lock:2 Unlock:1 Unlock:0", 0,
     true, false},
    {"sizable: empty batch dirties", true, false, "Lock Unlock", "Lock:1 Dirtied:0 Unlock:0", 0, true, true},
    {"sizable: clean clears both flags", true, false, "Lock Unlock Clean", "Lock:1 Dirtied:0 Unlock:0", 0, false,
     false},
    {"sizable: nested batch", true, false, "Lock Lock Dirtied Unlock Unlock",
     "Lock:1 Lock:2 Unlock:1 Dirtied:0 Unlock:0", 0, true, true},
    {"sizable: batch of changes ends dirtied", true, false, "Lock Changed Unlock", "Lock:1 Dirtied:0 Unlock:0", 0, true,
     true},
    {"sizable: unlocked change", true, false, "Changed", "Changed:0", 0, true, false},
    {"sizable: dirtied while locked, silent end", true, false, "Lock Dirtied SilentUnlock", "Lock:1 SilentUnlock:0", 0,
     true, true},
    {"sizable: lock on change", true, true, "Changing Dirtied", "Changing:0 Lock:1 Unlock:0 Dirtied:0", 0, true, true},
};

TEST(CoreChangeTracking, NotificationSequences) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.title);
    HChangableObject plain;
    HSizableObject sizable;
    HChangableObject& o = c.sizable ? sizable : plain;
    o.SetLockOnChange(c.lockOnChange);
    Recorder recorder(&o);
    RunScript(o, c.script);
    EXPECT_EQ(c.events, recorder.Events()) << "script: " << c.script;
    EXPECT_EQ(c.lockCount, o.GetLockCount());
    EXPECT_EQ(c.lockCount > 0, o.GetLocked());
    EXPECT_EQ(c.modified, o.GetModified());
    EXPECT_EQ(c.dirty, sizable.GetDirty());
    o.OnDeleting = nullptr;  // the recorder goes first

    // Without listeners the same script ends in the same state: unset event
    // members are skipped, not called.
    HChangableObject quietPlain;
    HSizableObject quietSizable;
    HChangableObject& quiet = c.sizable ? quietSizable : quietPlain;
    quiet.SetLockOnChange(c.lockOnChange);
    RunScript(quiet, c.script);
    EXPECT_EQ(c.lockCount, quiet.GetLockCount()) << "without listeners";
    EXPECT_EQ(c.modified, quiet.GetModified()) << "without listeners";
  }
}

// A subclass listening to its own deletion through the overridable step.
class Subclass : public HSizableObject {
 public:
  explicit Subclass(std::vector<std::string>* log) : log_(log), name_("subclass") {}

 protected:
  void DoDeleting() override {
    // Reads a member of the subclass: valid only while the whole object exists.
    log_->push_back("DoDeleting " + name_);
    HSizableObject::DoDeleting();
  }

 private:
  std::vector<std::string>* log_;
  std::string name_;
};

TEST(CoreChangeTracking, DestructionFiresDeletingOnce) {
  {
    HChangableObject* o = new HChangableObject;
    Recorder recorder(o);
    delete o;
    EXPECT_EQ("Deleting", recorder.Events()) << "deleted from the heap";
  }
  {
    Recorder* recorder = nullptr;
    {
      HSizableObject o;
      recorder = new Recorder(&o);
    }
    EXPECT_EQ("Deleting", recorder->Events()) << "destroyed on the stack";
    delete recorder;
  }
  {
    // delete reaches the subclass's override before any destructor ran.
    std::vector<std::string> log;
    Subclass* o = new Subclass(&log);
    Recorder recorder(o);
    delete o;
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ("DoDeleting subclass", log[0]);
    EXPECT_EQ("Deleting", recorder.Events());
  }
  {
    // An explicit announcement fires as asked; destruction still fires its own.
    HChangableObject* o = new HChangableObject;
    Recorder recorder(o);
    o->Deleting();
    delete o;
    EXPECT_EQ("Deleting Deleting", recorder.Events());
  }
}

}  // namespace
