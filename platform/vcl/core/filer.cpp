#include "platform/vcl/core/filer.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <unordered_set>

#include "platform/ostrel/oslib.h"
#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/core/text_units_impl.h"

namespace Classes {

VCL_CLASS_IMPL(TFiler, TObject)
VCL_CLASS_IMPL(TWriter, TFiler)
VCL_CLASS_IMPL(TReader, TFiler)

using Typinfo::TPropInfo;

namespace {

using Sysutils::SameText;

// The ten-byte x87 extended format, from and to the host's long double.
void ToExtended(long double value, unsigned char (&out)[10]) {
  static_assert(std::numeric_limits<long double>::digits == 64, "long double is the x87 extended type");
  std::memcpy(out, &value, 10);
}
long double FromExtended(const unsigned char (&in)[10]) {
  long double value = 0;
  std::memcpy(&value, in, 10);
  return value;
}

// The component a property belongs to, to name it in messages.
AnsiString NameOf(TComponent* c) { return c->GetName().IsEmpty() ? AnsiString(c->ClassName()) : c->GetName(); }

// One more level of what (components, lists) for as long as it lives;
// refused past the limit, before anything of that level is read.
class Nesting {
 public:
  Nesting(int& depth, const char* what) : depth_(depth) {
    if (depth_ >= MaxStreamNesting)
      throw EReadError(AnsiString(what) + " nested deeper than " + AnsiString(MaxStreamNesting) + " levels");
    ++depth_;
  }
  ~Nesting() { --depth_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  int& depth_;
};

}  // namespace

// ---- TStream ----

void TStream::WriteComponent(TComponent* component) {
  TWriter writer(this);
  writer.WriteDescendent(component);
}

TComponent* TStream::ReadComponent(TComponent* instance) {
  TReader reader(this);
  return reader.ReadRootComponent(instance);
}

// ---- TWriter ----

void TWriter::WriteSignature() { stream_->WriteBuffer(kFilerSignature, sizeof kFilerSignature); }

void TWriter::WriteValue(TValueType value) { stream_->WriteBuffer(&value, 1); }

void TWriter::WriteInteger(long long value) {
  if (value >= -128 && value <= 127) {
    WriteValue(vaInt8);
    const auto v = static_cast<signed char>(value);
    stream_->WriteBuffer(&v, 1);
  } else if (value >= -32768 && value <= 32767) {
    WriteValue(vaInt16);
    const auto v = static_cast<short>(value);
    stream_->WriteBuffer(&v, 2);
  } else if (value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max()) {
    WriteValue(vaInt32);
    const auto v = static_cast<int>(value);
    stream_->WriteBuffer(&v, 4);
  } else {
    WriteValue(vaInt64);
    stream_->WriteBuffer(&value, 8);
  }
}

void TWriter::WriteBoolean(bool value) { WriteValue(value ? vaTrue : vaFalse); }

void TWriter::WriteFloat(long double value) {
  WriteValue(vaExtended);
  unsigned char bytes[10];
  ToExtended(value, bytes);
  stream_->WriteBuffer(bytes, 10);
}

void TWriter::WriteDate(System::TDateTime value) {
  WriteValue(vaDate);
  const double v = value;
  stream_->WriteBuffer(&v, 8);
}

void TWriter::WriteBytes(const std::string& bytes) {
  const int n = static_cast<int>(bytes.size());
  if (n <= 255) {
    WriteValue(vaString);
    const auto len = static_cast<unsigned char>(n);
    stream_->WriteBuffer(&len, 1);
  } else {
    WriteValue(vaLString);
    stream_->WriteBuffer(&n, 4);
  }
  stream_->WriteBuffer(bytes.data(), n);
}

namespace {
bool IsAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}
}  // namespace

void TWriter::WriteString(const AnsiString& value) {
  const std::string_view bytes(value.c_str(), static_cast<size_t>(value.Length()));
  if (!IsAscii(bytes)) {
    const std::wstring units = TextUnits::FromAnsi(bytes);
    if (TextUnits::ToAnsi(units) == bytes) return WriteWideString(units);
  }
  WriteBytes(std::string(bytes));
}

void TWriter::WriteWideString(const std::wstring& value) {
  if (std::all_of(value.begin(), value.end(), [](wchar_t c) { return c < 0x80; }))
    return WriteBytes(std::string(value.begin(), value.end()));
  std::string utf8;
  if (TextUnits::ToUtf8(value, utf8)) {
    WriteValue(vaUTF8String);
    const int n = static_cast<int>(utf8.size());
    stream_->WriteBuffer(&n, 4);
    stream_->WriteBuffer(utf8.data(), n);
  } else {
    WriteValue(vaWString);
    const int n = static_cast<int>(value.size());
    stream_->WriteBuffer(&n, 4);
    stream_->WriteBuffer(value.data(), n * 2);
  }
}

void TWriter::WriteIdent(const AnsiString& ident) {
  if (SameText(ident, "False"))
    WriteValue(vaFalse);
  else if (SameText(ident, "True"))
    WriteValue(vaTrue);
  else if (SameText(ident, "nil"))
    WriteValue(vaNil);
  else if (SameText(ident, "Null"))
    WriteValue(vaNull);
  else {
    WriteValue(vaIdent);
    WriteStr(ident);
  }
}

void TWriter::WriteStr(const AnsiString& value) {
  if (value.Length() > 255) throw EWriteError("Name too long: " + value.SubString(1, 32) + "...");
  const auto len = static_cast<unsigned char>(value.Length());
  stream_->WriteBuffer(&len, 1);
  stream_->WriteBuffer(value.c_str(), len);
}

void TWriter::WriteBinary(const void* data, long size) {
  WriteValue(vaBinary);
  const int n = static_cast<int>(size);
  stream_->WriteBuffer(&n, 4);
  stream_->WriteBuffer(data, size);
}

void TWriter::WriteDescendent(TComponent* root) {
  root_ = root;
  WriteSignature();
  WriteComponent(root);
}

void TWriter::WriteComponent(TComponent* component) {
  if (!root_) root_ = component;
  const TComponentState state = component->state_;
  component->state_ = state + TComponentState{csWriting};
  try {
    WriteStr(component->ClassName());
    WriteStr(component->GetName());
    WriteProperties(component);
    WriteListEnd();
    component->GetChildren({this, &TWriter::WriteChild}, root_);
    WriteListEnd();
  } catch (...) {
    component->state_ = state;
    throw;
  }
  component->state_ = state;
}

void TWriter::WriteProperties(TPersistent* instance) {
  for (const TPropInfo* prop : Typinfo::GetPropList(instance->ClassType()))
    if (!SameText(prop->Name, "Name")) WriteProperty(instance, prop);
  instance->DefineProperties(this);
}

void TWriter::WriteProperty(TPersistent* instance, const TPropInfo* prop) {
  using namespace Typinfo;
  if (prop->Stored && !prop->Stored(instance)) return;
  const TTypeKind kind = prop->Kind();
  const AnsiString name = prefix_ + prop->Name;
  if (kind == tkClass) {
    TObject* value = GetObjectProp(instance, prop);
    if (auto* c = dynamic_cast<TComponent*>(value)) {
      // A reference: by name, to the root or a component it owns.
      if (!prop->SetObj) return;
      if (c != root_ && (c->GetOwner() != root_ || c->GetName().IsEmpty())) return;
      WriteStr(name);
      WriteIdent(c->GetName());
    } else if (auto* sub = dynamic_cast<TPersistent*>(value)) {
      const AnsiString saved = prefix_;
      prefix_ = name + ".";
      try {
        WriteProperties(sub);
      } catch (...) {
        prefix_ = saved;
        throw;
      }
      prefix_ = saved;
    }
    return;
  }
  if (kind != tkMethod && !prop->SetOrd && !prop->SetFloat && !prop->SetStr) return;  // read only
  if (IsDefaultPropValue(instance, prop)) return;
  if (kind == tkMethod) {
    // Only handlers that are published methods of the root can be named.
    const AnsiString method = root_ ? MethodName(root_, GetMethodProp(instance, prop)) : AnsiString();
    if (method.IsEmpty()) return;
    WriteStr(name);
    WriteIdent(method);
    return;
  }
  WriteStr(name);
  const TTypeInfo* type = prop->PropType();
  switch (kind) {
    case tkInteger: {
      const long long v = GetOrdProp(instance, prop);
      const char* ident = type->IntToIdent ? type->IntToIdent(v) : nullptr;
      if (ident)
        WriteIdent(ident);
      else
        WriteInteger(v);
      break;
    }
    case tkEnumeration:
      WriteIdent(GetEnumName(type, static_cast<int>(GetOrdProp(instance, prop))));
      break;
    case tkSet: {
      WriteValue(vaSet);
      const unsigned long long bits = static_cast<unsigned long long>(GetOrdProp(instance, prop));
      for (int i = type->CompType->MinValue; i <= type->CompType->MaxValue && i < 64; ++i)
        if (bits & (1ULL << i)) WriteStr(GetEnumName(type->CompType, i));
      WriteStr("");
      break;
    }
    case tkFloat:
      if (std::strcmp(type->Name, "TDateTime") == 0)
        WriteDate(System::TDateTime(GetFloatProp(instance, prop)));
      else
        WriteFloat(GetFloatProp(instance, prop));
      break;
    case tkLString:
      WriteString(GetStrProp(instance, prop));
      break;
    default:
      throw EWriteError("Property " + name + " cannot be written");
  }
}

void TWriter::DefineProperty(const AnsiString& name, TReaderProc, TWriterProc writeData, bool hasData) {
  if (!hasData || !writeData) return;
  WriteStr(prefix_ + name);
  writeData(this);
}

void TWriter::DefineBinaryProperty(const AnsiString& name, TStreamProc, TStreamProc writeData, bool hasData) {
  if (!hasData || !writeData) return;
  TMemoryStream data;
  writeData(&data);
  WriteStr(prefix_ + name);
  WriteBinary(data.GetMemory(), static_cast<long>(data.GetSize()));
}

// ---- TReader: values ----

void TReader::ReadSignature() {
  char signature[sizeof kFilerSignature] = {};
  if (stream_->Read(signature, sizeof signature) != sizeof signature ||
      std::memcmp(signature, kFilerSignature, sizeof signature) != 0)
    throw EReadError("Invalid stream format");
}

TValueType TReader::ReadValue() {
  unsigned char v = 0;
  Read(&v, 1);
  if (v > vaDouble) throw EReadError("Invalid stream format");
  return static_cast<TValueType>(v);
}

TValueType TReader::NextValue() {
  const TValueType v = ReadValue();
  stream_->Seek(-1, soCurrent);
  return v;
}

bool TReader::EndOfList() {
  unsigned char v = 0;
  Read(&v, 1);
  stream_->Seek(-1, soCurrent);
  return v == vaNull;
}

void TReader::CheckValue(TValueType expected) {
  if (ReadValue() != expected) {
    stream_->Seek(-1, soCurrent);
    PropValueError();
  }
}

void TReader::PropValueError() { throw EReadError("Invalid property value"); }

long long TReader::ReadInt64() {
  switch (ReadValue()) {
    case vaInt8: {
      signed char v;
      Read(&v, 1);
      return v;
    }
    case vaInt16: {
      short v;
      Read(&v, 2);
      return v;
    }
    case vaInt32: {
      int v;
      Read(&v, 4);
      return v;
    }
    case vaInt64: {
      long long v;
      Read(&v, 8);
      return v;
    }
    default:
      stream_->Seek(-1, soCurrent);
      PropValueError();
  }
}

int TReader::ReadInteger() {
  const long long v = ReadInt64();
  if (v < std::numeric_limits<int>::min() || v > std::numeric_limits<int>::max()) PropValueError();
  return static_cast<int>(v);
}

bool TReader::ReadBoolean() {
  const TValueType v = ReadValue();
  if (v != vaTrue && v != vaFalse) {
    stream_->Seek(-1, soCurrent);
    PropValueError();
  }
  return v == vaTrue;
}

long double TReader::ReadFloat() {
  switch (NextValue()) {
    case vaInt8:
    case vaInt16:
    case vaInt32:
    case vaInt64:
      return static_cast<long double>(ReadInt64());
    default:
      break;
  }
  switch (ReadValue()) {
    case vaExtended: {
      unsigned char bytes[10];
      Read(bytes, 10);
      return FromExtended(bytes);
    }
    case vaSingle: {
      float v;
      Read(&v, 4);
      return v;
    }
    case vaDouble:
    case vaDate: {
      double v;
      Read(&v, 8);
      return v;
    }
    case vaCurrency: {
      long long v;
      Read(&v, 8);
      return static_cast<long double>(v) / 10000;
    }
    default:
      stream_->Seek(-1, soCurrent);
      PropValueError();
  }
}

System::TDateTime TReader::ReadDate() { return System::TDateTime(static_cast<double>(ReadFloat())); }

AnsiString TReader::ReadStr() {
  unsigned char len = 0;
  Read(&len, 1);
  AnsiString s;
  if (len) Read(s.SetLength(len).data(), len);
  // Everything after the NUL would be lost to whoever takes the name as C text.
  if (std::memchr(s.c_str(), '\0', len)) {
    std::string shown;
    for (char c : s.str()) shown += c ? std::string(1, c) : std::string("#0");
    throw EReadError("Name " + AnsiString(shown) + " holds a NUL character");
  }
  return s;
}

TValueType TReader::ReadStringBytes(std::string& bytes) {
  const TValueType type = ReadValue();
  long long len = 0;
  switch (type) {
    case vaString: {
      unsigned char n;
      Read(&n, 1);
      len = n;
      break;
    }
    case vaLString:
    case vaWString:
    case vaUTF8String: {
      int n = 0;
      Read(&n, 4);
      len = type == vaWString ? 2LL * n : n;
      if (n < 0 || len > stream_->GetSize() - stream_->GetPosition()) throw EReadError("Invalid stream format");
      break;
    }
    default:
      stream_->Seek(-1, soCurrent);
      PropValueError();
  }
  bytes.assign(static_cast<size_t>(len), '\0');
  if (len) Read(bytes.data(), static_cast<long>(len));
  return type;
}

namespace {
// The text of a string value of type, held in bytes as the stream holds it.
std::wstring Units(TValueType type, const std::string& bytes) {
  switch (type) {
    case vaWString: {
      std::wstring units(bytes.size() / 2, L'\0');
      std::memcpy(units.data(), bytes.data(), units.size() * 2);
      return units;
    }
    case vaUTF8String:
      return TextUnits::FromUtf8(bytes);
    default:
      return TextUnits::FromAnsi(bytes);
  }
}
}  // namespace

AnsiString TReader::ReadString() {
  std::string bytes;
  const TValueType type = ReadStringBytes(bytes);
  if (type == vaString || type == vaLString) return AnsiString(bytes);
  return AnsiString(TextUnits::ToAnsi(Units(type, bytes)));
}

std::wstring TReader::ReadWideString() {
  std::string bytes;
  const TValueType type = ReadStringBytes(bytes);
  return Units(type, bytes);
}

AnsiString TReader::ReadIdent() {
  switch (ReadValue()) {
    case vaIdent:
      return ReadStr();
    case vaFalse:
      return "False";
    case vaTrue:
      return "True";
    case vaNil:
      return "nil";
    case vaNull:
      return "Null";
    default:
      stream_->Seek(-1, soCurrent);
      PropValueError();
  }
}

std::vector<unsigned char> TReader::ReadBinary() {
  CheckValue(vaBinary);
  int len = 0;
  Read(&len, 4);
  if (len < 0 || len > stream_->GetSize() - stream_->GetPosition()) throw EReadError("Invalid stream format");
  std::vector<unsigned char> data(static_cast<size_t>(len));
  if (len) Read(data.data(), len);
  return data;
}

void TReader::SkipValue() {
  switch (NextValue()) {
    case vaNull:
    case vaFalse:
    case vaTrue:
    case vaNil:
      ReadValue();
      break;
    case vaList: {
      ReadValue();
      const Nesting level(listDepth_, "Lists");
      while (!EndOfList()) SkipValue();
      ReadListEnd();
      break;
    }
    case vaInt8:
    case vaInt16:
    case vaInt32:
    case vaInt64:
      ReadInt64();
      break;
    case vaExtended:
    case vaSingle:
    case vaDouble:
    case vaDate:
    case vaCurrency:
      ReadFloat();
      break;
    case vaString:
    case vaLString:
    case vaWString:
    case vaUTF8String:
      ReadString();
      break;
    case vaIdent:
      ReadIdent();
      break;
    case vaBinary:
      ReadBinary();
      break;
    case vaSet:
      ReadValue();
      while (!ReadStr().IsEmpty()) {
      }
      break;
    default:
      throw EReadError("Invalid stream format");
  }
}

// ---- TReader: components ----

TComponent* TReader::ReadRootComponent(TComponent* root, TComponent* owner) {
  made_.clear();
  loading_.clear();
  fixups_.clear();
  classes_.clear();
  owner_ = nullptr;
  where_ = rootWhere_ = "";
  located_ = false;
  child_ = property_ = nullptr;
  depth_ = 1;
  listDepth_ = 0;
  bool madeRoot = false;
  try {
    ReadSignature();
    const AnsiString className = ReadStr();
    const AnsiString name = ReadStr();
    rootWhere_ = name.IsEmpty() ? className : name;
    if (!root) {
      root = CreateComponent(FindClass(className), owner);
      madeRoot = true;
    } else {
      const System::TMetaClass* cls = root->ClassType();
      while (cls && !cls->ClassNameIs(className.c_str())) cls = cls->Parent;
      if (!cls) throw EReadError("Cannot read a " + className + " into a " + root->ClassName());
    }
    root_ = root;
    owner_ = root;
    if (!name.IsEmpty() && !SameText(root->GetName(), name)) {
      // Another root of the same owner may have the name: take the next free one.
      AnsiString unique = name;
      for (int i = 1; root->GetOwner() && root->GetOwner()->FindComponent(unique); ++i)
        unique = name + "_" + AnsiString(i);
      root->SetName(unique);
    }
    ReadBody(root);
    ResolveFixups();
  } catch (...) {
    // What was there already is no longer loading; what was made is freed,
    // last made first: children go before the parents holding them.
    const std::unordered_set<TComponent*> made(made_.begin(), made_.end());
    for (TComponent* c : loading_)
      if (!made.count(c)) c->state_ -= TComponentState{csLoading, csReading};
    loading_.clear();
    for (auto it = made_.rbegin(); it != made_.rend(); ++it) delete *it;
    made_.clear();
    if (madeRoot) delete root;
    root_ = nullptr;
    try {
      throw;
    } catch (const EClassNotFound&) {
      throw;
    } catch (const Sysutils::Exception& e) {
      const AnsiString where = located_ ? where_ : rootWhere_;
      if (where.IsEmpty()) throw EReadError(e.Message);
      throw EReadError("Error reading " + where + ": " + e.Message);
    }
  }
  for (TComponent* c : loading_) c->state_ >> csReading;
  for (TComponent* c : loading_) c->Loaded();
  made_.clear();
  loading_.clear();
  return root;
}

void TReader::ReadBody(TComponent* component) {
  component->state_ += TComponentState{csLoading, csReading};
  loading_.push_back(component);
  while (!EndOfList()) ReadProperty(component);
  ReadListEnd();
  while (!EndOfList()) ReadComponent(component);
  ReadListEnd();
}

// Errors name the place only once one happens: building it for every
// component and property read would cost more than reading them.
AnsiString TReader::Here() const {
  if (!child_) return rootWhere_;
  return NameOf(root_) + "." + *child_;
}

void TReader::Locate() {
  if (located_) return;
  located_ = true;
  where_ = property_ ? Here() + "." + *property_ : Here();
}

const System::TMetaClass* TReader::FindComponentClass(const AnsiString& name) {
  // A form names a few classes many times: each is looked up once a read.
  if (const auto known = classes_.find(name.str()); known != classes_.end()) return known->second;
  const System::TMetaClass* found = nullptr;
  // The classes of the root's fields need no registering.
  for (const System::TMetaClass* cls = root_->ClassType(); cls && !found; cls = cls->Parent)
    for (int i = 0; i < cls->PublishedCount && !found; ++i)
      if (const TPropInfo& field = cls->Published[i]; field.IsField())
        if (const System::TMetaClass* type = field.PropType()->ClassType(); type->ClassNameIs(name.c_str()))
          found = type;
  if (!found) found = FindClass(name);
  classes_.emplace(name.str(), found);
  return found;
}

void TReader::ReadComponent(TComponent* parent) {
  unsigned char first = 0;
  Read(&first, 1);
  if ((first & 0xF0) == 0xF0) {
    // Flags of inherited and inline children: the position comes after them.
    if (first & 0x02) ReadInteger();
  } else {
    stream_->Seek(-1, soCurrent);
  }
  const AnsiString className = ReadStr();
  const AnsiString name = ReadStr();
  const AnsiString* outer = child_;
  child_ = name.IsEmpty() ? &className : &name;
  try {
    const Nesting level(depth_, "Components");
    const System::TMetaClass* cls = FindComponentClass(className);
    TComponent* component = name.IsEmpty() ? nullptr : owner_->FindComponent(name);
    // One there before the read is read into, if of the same class; one this
    // read has read already is a second component of the name.
    if (component && (component->ClassType() != cls || component->state_.Contains(csReading)))
      throw EReadError("A component named " + name + " already exists");
    if (!component) {
      component = CreateComponent(cls, owner_);
      made_.push_back(component);
      component->SetName(name);
      if (!name.IsEmpty())
        if (const TPropInfo* field = Typinfo::GetFieldInfo(root_->ClassType(), name))
          if (!field->SetField(root_, component))
            throw EReadError("Field " + name + " of " + root_->ClassName() + " cannot hold a " + className);
    }
    if (component->HasParent()) component->SetParentComponent(parent);
    ReadBody(component);
  } catch (...) {
    Locate();
    child_ = outer;
    throw;
  }
  child_ = outer;
}

void TReader::ReadProperty(TPersistent* instance) {
  const AnsiString path = ReadStr();
  const AnsiString* outer = property_;
  property_ = &path;
  try {
    ReadPropertyValue(instance, path);
  } catch (...) {
    Locate();
    property_ = outer;
    throw;
  }
  property_ = outer;
}

void TReader::ReadPropertyValue(TPersistent* instance, const AnsiString& path) {
  // "Font.Height": walk the sub-objects to the last part.
  TPersistent* target = instance;
  AnsiString tail;
  const AnsiString* rest = &path;  // most paths have no dot: no copy
  for (int dot; (dot = rest->Pos(".")) > 0;) {
    const AnsiString part = rest->SubString(1, dot - 1);
    tail = rest->SubString(dot + 1, rest->Length() - dot);
    rest = &tail;
    const TPropInfo* prop = Typinfo::GetPropInfo(target->ClassType(), part);
    auto* sub = prop && prop->Kind() == Typinfo::tkClass
                    ? dynamic_cast<TPersistent*>(Typinfo::GetObjectProp(target, prop))
                    : nullptr;
    if (!sub) throw EReadError("Property " + part + " does not exist");
    target = sub;
  }
  if (const TPropInfo* prop = Typinfo::GetPropInfo(target->ClassType(), *rest)) {
    ReadPropValue(target, prop);
  } else {
    defining_ = *rest;
    defined_ = false;
    target->DefineProperties(this);
    if (!defined_) throw EReadError("Property " + *rest + " does not exist");
  }
}

void TReader::ReadPropValue(TPersistent* instance, const TPropInfo* prop) {
  using namespace Typinfo;
  const TTypeInfo* type = prop->PropType();
  switch (prop->Kind()) {
    case tkInteger:
      if (NextValue() == vaIdent) {
        long long v = 0;
        if (!type->IdentToInt || !type->IdentToInt(ReadIdent().c_str(), v)) PropValueError();
        SetOrdProp(instance, prop, v);
      } else {
        SetOrdProp(instance, prop, ReadInt64());
      }
      break;
    case tkEnumeration: {
      const int v = GetEnumValue(type, ReadIdent());
      if (v < 0) PropValueError();
      SetOrdProp(instance, prop, v);
      break;
    }
    case tkSet: {
      CheckValue(vaSet);
      unsigned long long bits = 0;
      for (AnsiString item; !(item = ReadStr()).IsEmpty();) {
        const int v = GetEnumValue(type->CompType, item);
        if (v < 0 || v >= 64) PropValueError();
        bits |= 1ULL << v;
      }
      SetOrdProp(instance, prop, static_cast<long long>(bits));
      break;
    }
    case tkFloat:
      SetFloatProp(instance, prop, static_cast<double>(ReadFloat()));
      break;
    case tkLString:
      SetStrProp(instance, prop, ReadString());
      break;
    case tkMethod: {
      const AnsiString name = ReadIdent();
      if (SameText(name, "nil")) {
        SetMethodProp(instance, prop, {});
        break;
      }
      const char* signature = MethodSignature(root_->ClassType(), name);
      if (!signature) throw EReadError("Method " + name + " not found in " + root_->ClassName());
      if (std::strcmp(signature, type->Signature) != 0)
        throw EReadError("Method " + name + " does not fit " + prop->Name);
      SetMethodProp(instance, prop, MethodAddress(root_, name));
      break;
    }
    case tkClass: {
      const AnsiString name = ReadIdent();
      if (SameText(name, "nil"))
        SetObjectProp(instance, prop, nullptr);
      else
        fixups_.push_back({instance, prop, name, property_ ? Here() + "." + *property_ : Here()});
      break;
    }
    default:
      PropValueError();
  }
}

void TReader::ResolveFixups() {
  for (const Fixup& f : fixups_) {
    TComponent* target = SameText(f.name, root_->GetName()) ? root_ : root_->FindComponent(f.name);
    where_ = f.where;
    located_ = true;
    if (!target) throw EReadError("Unresolved reference to " + f.name);
    Typinfo::SetObjectProp(f.instance, f.prop, target);
    located_ = false;
  }
  fixups_.clear();
}

void TReader::DefineProperty(const AnsiString& name, TReaderProc readData, TWriterProc, bool) {
  if (defined_ || !readData || !SameText(name, defining_)) return;
  defined_ = true;
  readData(this);
}

void TReader::DefineBinaryProperty(const AnsiString& name, TStreamProc readData, TStreamProc, bool) {
  if (defined_ || !readData || !SameText(name, defining_)) return;
  defined_ = true;
  const std::vector<unsigned char> bytes = ReadBinary();
  TMemoryStream data;
  data.WriteBuffer(bytes.data(), static_cast<long>(bytes.size()));
  data.SetPosition(0);
  readData(&data);
}

// ---- designs in resources ----

HINSTANCE FindClassHInstance(const System::TMetaClass* cls) { return static_cast<HINSTANCE>(ModuleOf(cls)); }

bool InitInheritedComponent(TComponent* instance, const System::TMetaClass* rootAncestor) {
  std::vector<const System::TMetaClass*> chain;
  for (const System::TMetaClass* cls = instance->ClassType(); cls && cls != rootAncestor; cls = cls->Parent)
    chain.push_back(cls);
  bool read = false;
  for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
    const HINSTANCE module = FindClassHInstance(*it);
    if (!module || !FindResourceA(module, (*it)->Name, RT_RCDATA)) continue;
    TResourceStream stream(module, (*it)->Name, RT_RCDATA);
    TReader reader(&stream);
    reader.ReadRootComponent(instance);
    read = true;
  }
  return read;
}

}  // namespace Classes
