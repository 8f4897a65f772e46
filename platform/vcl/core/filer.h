#pragma once
/// \file
/// Unit Classes, component streaming: the binary form of components and
/// their published properties, written by TWriter and read back by TReader.
///
/// A stream starts with the signature "TPF0". A component is its class name
/// and its name (short strings: a length byte and the bytes), its properties
/// as name and value until an empty name, then its child components in the
/// same form until a zero byte. A value is a TValueType byte and its data.
///
/// A string value names its encoding, so that it reads the same in a process
/// of any ANSI code page: ASCII is written as vaString/vaLString bytes, any
/// other text as vaUTF8String. A reader converts vaUTF8String and vaWString
/// to its code page, '?' standing for a character the code page has no
/// letter for and U+FFFD for each ill-formed UTF-8 sequence (so '?' too,
/// unless the code page is UTF-8). Non-ASCII vaString/vaLString bytes, as
/// older writers wrote them, name no encoding: they are read as they are, as
/// bytes of the reader's code page, and mean what the writer meant only in
/// the code page it ran in.
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/vcl/core/closure.h"
#include "platform/vcl/core/component.h"
#include "platform/vcl/core/streams.h"
#include "platform/vcl/core/typinfo.h"

namespace Classes {

/// The type byte in front of every value.
enum TValueType : unsigned char {
  vaNull,      // end of a list, a property list or a child list
  vaList,      // values until vaNull
  vaInt8,      // one byte, signed
  vaInt16,     // two bytes
  vaInt32,     // four bytes
  vaExtended,  // ten-byte floating point
  vaString,    // length byte and bytes
  vaIdent,     // length byte and the identifier
  vaFalse,
  vaTrue,
  vaBinary,      // four-byte length and bytes
  vaSet,         // element names until an empty one
  vaLString,     // four-byte length and bytes
  vaNil,         // no object, no method
  vaCollection,  // not written here; refused when read
  vaSingle,      // four-byte floating point
  vaCurrency,    // eight-byte integer, ten-thousandths
  vaDate,        // eight-byte floating point, days
  vaWString,     // four-byte length and UTF-16 units
  vaInt64,       // eight bytes
  vaUTF8String,  // four-byte length and UTF-8 bytes
  vaDouble       // eight-byte floating point
};

/// The four bytes a component stream starts with.
inline constexpr char kFilerSignature[4] = {'T', 'P', 'F', '0'};

/// How deep readers and converters of streams and form texts let components
/// nest in components, and lists in lists (the root, or the outermost list, is
/// the first level); deeper input is refused with the reader's error. Real
/// forms are a few levels deep; this many levels are read within a worker
/// thread's 256 KB stack.
inline constexpr int MaxStreamNesting = 256;

class TReader;
class TWriter;
/// Reads or writes a property a class defines itself (a string list's lines).
using TReaderProc = System::TClosure<void(TReader*)>;
using TWriterProc = System::TClosure<void(TWriter*)>;
/// Reads or writes a defined property held as bytes.
using TStreamProc = System::TClosure<void(TStream*)>;

/// What TReader and TWriter share: the stream, the component at the top of
/// what is read or written, and the properties classes define themselves.
class VCL_API TFiler : public TObject {
  VCL_CLASS();

 public:
  explicit TFiler(TStream* stream) : stream_(stream) {}
  TStream* GetStream() const { return stream_; }
  /// The component whose published methods events are bound to, and whose
  /// components references name.
  TComponent* GetRoot() const { return root_; }
  void SetRoot(TComponent* value) { root_ = value; }

  /// Called by TPersistent::DefineProperties: a property the class reads and
  /// writes itself, written when hasData.
  virtual void DefineProperty(const AnsiString& name, TReaderProc readData, TWriterProc writeData, bool hasData) = 0;
  virtual void DefineBinaryProperty(const AnsiString& name, TStreamProc readData, TStreamProc writeData,
                                    bool hasData) = 0;

 protected:
  TStream* stream_;
  TComponent* root_ = nullptr;
};

/// Writes values and components.
class VCL_API TWriter : public TFiler {
  VCL_CLASS();

 public:
  using TFiler::TFiler;

  void WriteSignature();
  void WriteValue(TValueType value);
  /// The smallest integer type that holds value.
  void WriteInteger(long long value);
  void WriteBoolean(bool value);
  void WriteFloat(long double value);
  void WriteDate(System::TDateTime value);
  /// Text of the ANSI code page: ASCII as vaString up to 255 bytes and
  /// vaLString above, other text converted to vaUTF8String. Bytes that are
  /// not text of the code page (that would not come back the same from
  /// Unicode) are written as they are, as ASCII is.
  void WriteString(const AnsiString& value);
  /// UTF-16 text: ASCII as WriteString writes it, other text as
  /// vaUTF8String, or vaWString when a surrogate stands alone.
  void WriteWideString(const std::wstring& value);
  /// False, True and nil as their own types, anything else as vaIdent.
  void WriteIdent(const AnsiString& ident);
  /// A short string with no type byte: a name.
  void WriteStr(const AnsiString& value);
  void WriteListBegin() { WriteValue(vaList); }
  void WriteListEnd() { WriteValue(vaNull); }
  void WriteBinary(const void* data, long size);

  /// Writes root and the components it owns, nested as their parents hold
  /// them, after the signature.
  void WriteDescendent(TComponent* root);
  /// Writes one component (the root once set) with its properties and children.
  void WriteComponent(TComponent* component);
  /// The published properties of instance that differ from their defaults
  /// and the properties its class defines.
  void WriteProperties(TPersistent* instance);

  void DefineProperty(const AnsiString& name, TReaderProc readData, TWriterProc writeData, bool hasData) override;
  void DefineBinaryProperty(const AnsiString& name, TStreamProc readData, TStreamProc writeData, bool hasData) override;

 private:
  void WriteProperty(TPersistent* instance, const Typinfo::TPropInfo* prop);
  void WriteBytes(const std::string& bytes);  // vaString or vaLString
  void WriteChild(TComponent* child) { WriteComponent(child); }
  AnsiString prefix_;  // "Font." while a sub-object's properties are written
};

/// Reads values and components. Every error is an EReadError whose message
/// names the component and property being read (or EClassNotFound naming the
/// class); what was made before the error is freed again.
class VCL_API TReader : public TFiler {
  VCL_CLASS();

 public:
  using TFiler::TFiler;

  /// Raises EReadError "Invalid stream format" unless the signature follows.
  void ReadSignature();
  TValueType ReadValue();
  /// The type of the next value, left unread.
  TValueType NextValue();
  /// True (and nothing read) when a vaNull comes next. Any other byte may
  /// follow (a child's flags).
  bool EndOfList();
  void ReadListBegin() { CheckValue(vaList); }
  void ReadListEnd() { CheckValue(vaNull); }
  /// Any integer type; raises for anything else and, for ReadInteger, for a
  /// value outside int.
  int ReadInteger();
  long long ReadInt64();
  bool ReadBoolean();
  /// Any number type.
  long double ReadFloat();
  System::TDateTime ReadDate();
  /// vaString and vaLString as their bytes are; vaWString and vaUTF8String
  /// converted to the ANSI code page (see the top of this file).
  AnsiString ReadString();
  /// Any string value as UTF-16, vaString and vaLString bytes taken as the
  /// ANSI code page's.
  std::wstring ReadWideString();
  /// vaIdent, and False, True, nil and Null by their types.
  AnsiString ReadIdent();
  /// A short string with no type byte: a name, so one holding a NUL is refused.
  AnsiString ReadStr();
  /// The bytes of a vaBinary value.
  std::vector<unsigned char> ReadBinary();
  /// Passes over one value of any type (lists nested at most MaxStreamNesting deep).
  void SkipValue();

  /// Reads a whole stream into root (or, when root is null, into a new
  /// component of the class the stream names, owned by owner) and returns it.
  TComponent* ReadRootComponent(TComponent* root, TComponent* owner = nullptr);
  /// Reads one property, its name first, into instance.
  void ReadProperty(TPersistent* instance);

  void DefineProperty(const AnsiString& name, TReaderProc readData, TWriterProc writeData, bool hasData) override;
  void DefineBinaryProperty(const AnsiString& name, TStreamProc readData, TStreamProc writeData, bool hasData) override;

 private:
  struct Fixup {
    TPersistent* instance;
    const Typinfo::TPropInfo* prop;
    AnsiString name, where;
  };
  void CheckValue(TValueType expected);
  /// A string value's type and its bytes as the stream holds them.
  TValueType ReadStringBytes(std::string& bytes);
  void Read(void* buffer, long count) { stream_->ReadBuffer(buffer, count); }
  [[noreturn]] void PropValueError();
  void ReadComponent(TComponent* parent);
  /// A class named by the stream: a class of one of the root's fields, or a
  /// registered one (else EClassNotFound).
  const System::TMetaClass* FindComponentClass(const AnsiString& name);
  void ReadBody(TComponent* component);
  void ReadPropertyValue(TPersistent* instance, const AnsiString& path);
  void ReadPropValue(TPersistent* instance, const Typinfo::TPropInfo* prop);
  void ResolveFixups();
  /// The component being read as errors name it: "Form1.Button1".
  AnsiString Here() const;
  /// Sets where_ to the place being read, unless a deeper place set it.
  void Locate();

  TComponent* owner_ = nullptr;       // owner of the components made
  std::vector<TComponent*> made_;     // made by this read, in order
  std::vector<TComponent*> loading_;  // read by this read, for Loaded
  std::vector<Fixup> fixups_;         // references to resolve at the end
  // The classes the stream named so far, by its names.
  std::unordered_map<std::string, const System::TMetaClass*> classes_;
  AnsiString defining_;                   // the defined property asked for
  bool defined_ = false;                  // whether DefineProperties had it
  AnsiString rootWhere_;                  // the root as errors name it
  const AnsiString* child_ = nullptr;     // the child being read, as the stream names it
  const AnsiString* property_ = nullptr;  // the property being read
  AnsiString where_;                      // "Form1.Button1.Caption": where an error happened
  bool located_ = false;                  // whether where_ is set
  int depth_ = 0;                         // components being read, the root included
  int listDepth_ = 0;                     // lists being skipped
};

/// The module that holds cls (its resources hold its design).
VCL_API HINSTANCE FindClassHInstance(const System::TMetaClass* cls);
/// Reads into instance the designs of its class and of the ancestors below
/// rootAncestor, ancestors first, each from the resource named after its
/// class in the module holding it; false when there was none.
VCL_API bool InitInheritedComponent(TComponent* instance, const System::TMetaClass* rootAncestor);

}  // namespace Classes
