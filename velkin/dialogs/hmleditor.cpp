#include "velkin/dialogs/hmleditor.h"

#include <windows.h>

#include <memory>

#include "platform/ostrel/strcol.h"
#include "platform/ostrel/strutil.h"
#include "velkin/dialogs/dialog_texts.h"

VCL_COMPONENT_IMPL(THMultilineEditorForm, Forms::TForm, VCL_FIELD(Bevel1), VCL_FIELD(txtLines), VCL_FIELD(Memo),
                   VCL_FIELD(NvOS8PushButton1), VCL_FIELD(NvOS8PushButton2),
                   VCL_METHOD(MemoChange, System::TNotifyEvent), VCL_METHOD(FormKeyDown, Controls::TKeyEvent))

THMultilineEditorForm::THMultilineEditorForm(Classes::TComponent* owner) : TForm(owner) {
  ReadDesign();
  SetCaption(LibraryText(dtEditor));
  NvOS8PushButton1->SetText(LibraryText(dtOkKey));
  NvOS8PushButton2->SetText(LibraryText(dtClose));
  characters_ = LibraryText(dtCharacters);
  lines_ = LibraryText(dtLines);
  MemoChange(Memo);
}

void THMultilineEditorForm::MemoChange(System::TObject*) {
  // The words come from the tables and the numbers from here: a translated
  // text is never read as a format. Characters, not bytes: a UTF-8 program's
  // letters take two or more.
  const System::AnsiString text = Memo->GetText();
  const int characters = text.IsEmpty() ? 0 : MultiByteToWideChar(CP_ACP, 0, text.c_str(), text.Length(), nullptr, 0);
  txtLines->SetText(
      Message("%s %4d %s %3d", characters_.c_str(), characters, lines_.c_str(), Memo->GetLines()->GetCount()).Text());
}

void THMultilineEditorForm::FormKeyDown(System::TObject*, WORD& key, Controls::TShiftState shift) {
  if (shift.Contains(Controls::ssCtrl) && key == VK_RETURN) SetModalResult(Controls::mrOk);
  if (key == VK_ESCAPE) SetModalResult(Controls::mrCancel);
}

namespace {

// Runs the editor over lines put in by fill; read takes them back on OK.
template <class Fill, class Read>
bool Edit(const char* caption, int maxLength, Fill fill, Read read) {
  const std::unique_ptr<THMultilineEditorForm> form = std::make_unique<THMultilineEditorForm>(nullptr);
  if (caption && *caption) form->SetCaption(caption);
  form->Memo->Clear();
  if (maxLength >= 0) form->Memo->SetMaxLength(maxLength);
  fill(form->Memo->GetLines());
  form->Memo->SetSelStart(0);
  form->Memo->SetSelLength(0);
  if (form->ShowModal() != Controls::mrOk) return false;
  read(form->Memo->GetLines());
  return true;
}

}  // namespace

bool HTextEditor(System::AnsiString& text, const char* caption, int maxLength) {
  return Edit(
      caption, maxLength,
      [&text](Classes::TStrings* lines) {
        const char* separators = "\n\r";
        const int count = StrColCount(text.c_str(), separators);
        lines->BeginUpdate();
        for (int i = 1; i <= count; ++i) lines->Add(StrGetCol(text.c_str(), i, separators).Text());
        lines->EndUpdate();
      },
      [&text](Classes::TStrings* lines) {
        System::AnsiString joined;
        for (int i = 0; i < lines->GetCount(); ++i) joined += (i ? "\n" : "") + lines->Get(i);
        text = joined;
      });
}

bool HTextEditor(Classes::TStrings* list, const char* caption, int maxLength) {
  if (!list) return false;
  return Edit(
      caption, maxLength, [list](Classes::TStrings* lines) { lines->Assign(list); },
      [list](Classes::TStrings* lines) { list->Assign(lines); });
}
