#pragma once
// The host's run-time class registry for database objects of a plug-in's
// own classes (acrxBuildClassHierarchy, rxInit, deleteAcRxClass), the live
// objects behind them, and the persistent-reactor notification.
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "host/codes.h"
#include "host/object_id.h"

namespace host {

struct Host;

// The in-memory side of a database object of a plug-in's class, made by its
// class when the object is first used while the drawing is open.
class DbObjectInstance {
 public:
  virtual ~DbObjectInstance() = default;
  // Persistent-reactor notification: the entity `notifier`, which lists the
  // object `self` among its reactors, was changed and written back. The
  // notifier may be read here, never written.
  virtual void modified(Host& host, ObjectId self, ObjectId notifier) = 0;
};

struct ClassDescription {
  std::string name;     // the C++ class name, e.g. "LinkLineToNotify"
  std::string parent;   // "AcDbObject"
  std::string dxfName;  // the object's DXF type name
  std::string appName;  // the application named in the drawing's CLASS entry
  std::function<std::unique_ptr<DbObjectInstance>()> create;
};

class ClassRegistry {
 public:
  virtual ~ClassRegistry() = default;
  // eOk when the class is registered (again, with the same parent);
  // eWrongObjectType when a class of that name with another parent exists.
  virtual ErrorStatus addClass(ClassDescription description) = 0;
  // eOk, or eKeyNotFound for a name not registered.
  virtual ErrorStatus removeClass(std::string_view name) = 0;
  // A new object of a registered class in the drawing, owned by nothing yet;
  // the caller files it in a dictionary.
  virtual ErrorStatus newObject(std::string_view className, ObjectId& id) = 0;
  // The live instance of an object of a registered class, made on first use
  // (objects read from a file start as the class makes them); null for
  // other objects or an unregistered class.
  virtual DbObjectInstance* instance(ObjectId id) = 0;
};

}  // namespace host
