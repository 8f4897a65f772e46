// classref OUTPUT: writes, as Markdown, what a form text may set: every
// registered class with its published properties (type, and the value a new
// object has) and events, read from the framework's own type information, so
// the reference cannot drift from the code.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/core/string_list.h"
#include "tools/classref/describe.h"

namespace {

using System::TMetaClass;

std::string Anchor(const std::string& name) {
  std::string a;
  for (char c : name) a += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return a;
}

std::string Ancestry(const TMetaClass* cls) {
  std::string line = cls->Name;
  for (const TMetaClass* p = cls->Parent; p; p = p->Parent) line += std::string(" ← ") + p->Name;
  return line;
}

void WriteClass(std::ostream& out, const TMetaClass* cls, std::set<const Typinfo::TTypeInfo*>& types) {
  out << "\n## " << cls->Name << "\n\n" << Ancestry(cls) << "\n\n";
  classref::ClassRows rows = classref::Describe(cls);
  if (!rows.made) out << "(No object of this class could be made here: defaults are the declared ones.)\n\n";
  out << "| Property | Type | Default |\n|---|---|---|\n";
  for (const auto& p : rows.properties) {
    out << "| " << p.name << " | " << p.type << " | " << p.value << " |\n";
    if (p.named) types.insert(p.named);
  }
  if (!rows.events.empty()) {
    out << "\n| Event | Handler |\n|---|---|\n";
    for (const auto& e : rows.events) out << "| " << e.name << " | `" << e.type << "` |\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: classref OUTPUT\n");
    return 2;
  }
  std::vector<const TMetaClass*> classes = Classes::GetRegisteredClasses();
  std::sort(classes.begin(), classes.end(),
            [](const TMetaClass* a, const TMetaClass* b) { return std::string(a->Name) < b->Name; });
  std::ofstream out(argv[1], std::ios::binary);
  out << "# The classes a form text can name\n\n"
         "Velkin " VELKIN_VERSION
         ": every class the framework registers, so that a form text may make an object of it\n"
         "(`object Name: TClass`), with what the text may set. Written by the build from the\n"
         "framework's own type information.\n\n"
         "- A property the text does not set keeps the value a new object has: the Default column\n"
         "  (measured on a 96-DPI screen).\n"
         "- `Font.Name` and the like set a property of a sub-object; `Items.Strings = ( 'one' 'two' )`\n"
         "  sets the lines of a string list.\n"
         "- A property of a class type that is not a sub-object names another component of the form\n"
         "  (`FocusControl = NameEdit`).\n"
         "- An event names a published method of the form's class (`VCL_METHOD(Name, Type)`), which\n"
         "  has the handler's signature.\n"
         "- The root object of a form text is the program's own form class, derived from TForm:\n"
         "  it may set what [TForm](#tform) may.\n\n";
  for (size_t i = 0; i < classes.size(); ++i)
    out << (i ? ", " : "Classes: ") << "[" << classes[i]->Name << "](#" << Anchor(classes[i]->Name) << ")";
  out << "\n";
  std::set<const Typinfo::TTypeInfo*> types;
  for (const TMetaClass* cls : classes) WriteClass(out, cls, types);

  out << "\n## Names of values\n\nEnumerations, the members of sets and the named colours.\n\n"
         "| Type | Names |\n|---|---|\n";
  std::vector<std::pair<std::string, std::string>> named;
  for (const Typinfo::TTypeInfo* t : types) named.emplace_back(t->Name, classref::Names(t));
  std::sort(named.begin(), named.end());
  named.erase(std::unique(named.begin(), named.end()), named.end());
  for (const auto& [name, list] : named) out << "| " << name << " | " << list << " |\n";
  out.close();
  if (!out) {
    std::fprintf(stderr, "classref: cannot write %s\n", argv[1]);
    return 1;
  }
  std::printf("classref: %zu classes written to %s\n", classes.size(), argv[1]);
  return 0;
}
