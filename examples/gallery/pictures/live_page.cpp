// A form that changes while it is on the screen: rows added by its buttons,
// removed by their own, moved to another box, and the form made larger, each
// step captured from the real window.
#include <objbase.h>
#include <windows.h>

#include <string>
#include <vector>

#include "examples/gallery/pictures/picture_sheet.h"
#include "examples/gallery/pictures/pictures.h"
#include "examples/gallery/pictures/window_capture.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/scroll_box.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_group_box.h"
#include "platform/vcl/stdctrls/std_label.h"

using Controls::TAnchors;

namespace {

template <class T>
T* Add(Classes::TComponent* owner, Controls::TWinControl* parent, int left, int top, int width, int height,
       const char* text = "") {
  auto* control = new T(owner);
  control->SetBounds(left, top, width, height);
  control->SetText(text);
  control->SetParent(parent);
  return control;
}

// The form and what its buttons do: every change happens while it is shown.
class LiveForm {
 public:
  LiveForm() : form_(nullptr) {
    form_.SetCaption("Velkin: a form that changes on the screen");
    form_.SetPosition(Forms::poScreenCenter);
    form_.SetClientWidth(440);
    form_.SetClientHeight(250);
    auto* tools = Add<Extctrls::TPanel>(&form_, &form_, 0, 0, 0, 36);
    tools->SetBevelOuter(Extctrls::bvNone);
    tools->SetAlign(Controls::alTop);
    add_ = Add<Stdctrls::TButton>(&form_, tools, 8, 6, 90, 25, "&Add row");
    add_->SetOnClick({this, &LiveForm::AddRow});
    move_ = Add<Stdctrls::TButton>(&form_, tools, 104, 6, 110, 25, "&Move to the side");
    move_->SetOnClick({this, &LiveForm::MoveFirst});

    auto* bottom = Add<Extctrls::TPanel>(&form_, &form_, 0, 0, 0, 40);
    bottom->SetBevelOuter(Extctrls::bvNone);
    bottom->SetAlign(Controls::alBottom);
    auto* ok = Add<Stdctrls::TButton>(&form_, bottom, 440 - 176, 8, 80, 25, "OK");
    ok->SetDefault(true);
    ok->SetAnchors(TAnchors{Controls::akRight, Controls::akBottom});
    auto* cancel = Add<Stdctrls::TButton>(&form_, bottom, 440 - 88, 8, 80, 25, "Cancel");
    cancel->SetAnchors(TAnchors{Controls::akRight, Controls::akBottom});

    side_ = Add<Stdctrls::TGroupBox>(&form_, &form_, 0, 0, 150, 0, "Side");
    side_->SetAlign(Controls::alRight);
    rows_ = Add<Forms::TScrollBox>(&form_, &form_, 0, 0, 0, 0);
    rows_->SetAlign(Controls::alClient);
  }

  Forms::TForm& Form() { return form_; }
  void Click(Stdctrls::TButton* button) { SendMessageA(button->GetHandle(), BM_CLICK, 0, 0); }
  Stdctrls::TButton* AddButton() { return add_; }
  Stdctrls::TButton* MoveButton() { return move_; }
  Stdctrls::TButton* RemoveButton(int row) { return removes_[static_cast<size_t>(row)]; }

 private:
  // A row: its number, an edit that stretches with the box, and a button at
  // the right edge that removes the row.
  void AddRow(System::TObject*) {
    const int number = ++made_;
    auto* row = new Extctrls::TPanel(&form_);
    row->SetHeight(32);
    row->SetAlign(Controls::alTop);
    row->SetParent(rows_);
    const int width = row->GetWidth();
    Add<Stdctrls::TLabel>(&form_, row, 8, 9, 44, 15, ("Row " + std::to_string(number)).c_str());
    auto* edit = Add<Stdctrls::TEdit>(&form_, row, 56, 5, width - 56 - 40, 22, "Added while shown");
    edit->SetAnchors(TAnchors{Controls::akLeft, Controls::akTop, Controls::akRight});
    auto* remove = Add<Stdctrls::TButton>(&form_, row, width - 34, 5, 26, 22, "x");
    remove->SetAnchors(TAnchors{Controls::akTop, Controls::akRight});
    remove->SetOnClick({this, &LiveForm::RemoveRow});
    removes_.push_back(remove);
  }

  // Freed from its own button's click: the framework waits until the click
  // is over.
  void RemoveRow(System::TObject* sender) {
    auto* button = static_cast<Stdctrls::TButton*>(sender);
    delete button->GetParent();
  }

  void MoveFirst(System::TObject*) {
    if (rows_->GetControlCount() == 0) return;
    Controls::TControl* row = rows_->GetControl(0);
    row->SetParent(side_);
  }

  Forms::TForm form_;
  Stdctrls::TButton* add_;
  Stdctrls::TButton* move_;
  Stdctrls::TGroupBox* side_;
  Forms::TScrollBox* rows_;
  std::vector<Stdctrls::TButton*> removes_;
  int made_ = 0;
};

}  // namespace

int RenderLivePage(const char* folderName) {
  const std::string folder = folderName ? folderName : "pictures";
  CreateDirectoryA(folder.c_str(), nullptr);
  Forms::Application->Initialize();
  LiveForm live;
  live.Form().Show();
  for (int i = 0; i < 2; ++i) live.Click(live.AddButton());
  std::vector<std::vector<Shot>> lines(2);
  const auto shoot = [&](size_t line, const char* label) {
    LetPaint(live.Form().GetHandle());
    Shot shot;
    if (CaptureShot(live.Form().GetHandle(), label, shot)) lines[line].push_back(std::move(shot));
  };
  shoot(0, "Shown with two rows");
  for (int i = 0; i < 3; ++i) live.Click(live.AddButton());
  shoot(0, "Three rows added by the Add button");
  live.Click(live.RemoveButton(1));
  live.Click(live.RemoveButton(3));
  live.Click(live.MoveButton());
  shoot(1, "Rows 2 and 4 removed by their buttons, row 1 moved to the side");
  live.Form().SetBounds(live.Form().GetLeft(), live.Form().GetTop(), live.Form().GetWidth() + 120,
                        live.Form().GetHeight() + 40);
  shoot(1, "Made larger: the edits stretch, OK and Cancel keep their corner");
  live.Form().Hide();

  const bool com = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
  const bool saved =
      lines[0].size() == 2 && lines[1].size() == 2 &&
      SaveShotSheet(lines, "Velkin: controls added, removed and moved on the screen", folder + "\\live.png");
  if (com) CoUninitialize();
  return saved ? 1 : 0;
}
