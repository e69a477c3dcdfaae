#pragma once
// The embedded host's run-time class registry: the plug-in's database
// classes, their objects' live instances while the drawing is open, and the
// delivery of `modified` to the persistent reactors of a changed entity.
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "host/classes.h"
#include "host/drawing.h"

namespace standalone {

class ClassRegistry final : public host::ClassRegistry {
 public:
  // declare: called once per class when its first object is made, so the
  // drawing can list the class (its CLASS entry).
  using Declare = std::function<void(const host::ClassDescription&)>;
  ClassRegistry(host::Drawing& drawing, Declare declare) : drawing_(drawing), declare_(std::move(declare)) {}

  host::ErrorStatus addClass(host::ClassDescription description) override;
  host::ErrorStatus removeClass(std::string_view name) override;
  host::ErrorStatus newObject(std::string_view className, host::ObjectId& id) override;
  host::DbObjectInstance* instance(host::ObjectId id) override;

  // Tells every persistent reactor of the entity that it was modified. A
  // reactor that changes other entities notifies their reactors in turn; an
  // entity already being notified is not notified again meanwhile.
  void notifyModified(host::Host& host, host::ObjectId entity);

 private:
  const host::ClassDescription* classOfObject(host::ObjectId id) const;

  host::Drawing& drawing_;
  Declare declare_;
  std::map<std::string, host::ClassDescription, std::less<>> classes_;  // by name
  std::map<std::uint64_t, std::unique_ptr<host::DbObjectInstance>> instances_;
  std::set<std::string> declared_;
  std::set<std::uint64_t> notifying_;
};

}  // namespace standalone
