#import "tests/cocoa/ObjectCount.h"

#include <map>

#import "tests/cocoa/BundleUser.h"

namespace {

std::mutex countsMutex;
std::map<Class, ObjectCount*> counts;

}  // namespace

ObjectCount::ObjectCount(const char* className) : class_(objc_getClass(className)) {
  {
    const std::lock_guard<std::mutex> lock(countsMutex);
    counts[class_] = this;
  }
  // Of the class itself; without any counting it does what the inherited one does.
  class_addMethod(object_getClass(class_), @selector(allocWithZone:), implementationOf(allocate), "@@:^v");
  // GCC's runtime makes a class's table of methods when it is first asked for one; what is put in earlier lands in a
  // table that all the classes without one share.
  class_getMethodImplementation(class_, @selector(dealloc));
  // A method that is only inherited stays what it is for the other classes.
  const IMP inherited = class_getMethodImplementation(class_getSuperclass(class_), @selector(dealloc));
  class_addMethod(class_, @selector(dealloc), inherited, "v@:");
  dealloc_ =
      method_setImplementation(class_getInstanceMethod(class_, @selector(dealloc)), implementationOf(deallocate));
}

ObjectCount::~ObjectCount() {
  method_setImplementation(class_getInstanceMethod(class_, @selector(dealloc)), dealloc_);
  const std::lock_guard<std::mutex> lock(countsMutex);
  counts.erase(class_);
}

ObjectCount* ObjectCount::ofClass(Class wanted) {
  const std::lock_guard<std::mutex> lock(countsMutex);
  const auto found = counts.find(wanted);
  return found != counts.end() ? found->second : nullptr;
}

id ObjectCount::allocate(id self, SEL operation, NSZone* zone) {
  (void)operation;
  const Class made = reinterpret_cast<Class>(self);
  id object = NSAllocateObject(made, 0, zone);
  if (ObjectCount* const count = ofClass(made)) {
    const std::lock_guard<std::mutex> lock(count->mutex_);
    count->known_.insert(reinterpret_cast<const void*>(object));
    ++count->made_;
  }
  return object;
}

void ObjectCount::deallocate(id self, SEL operation) {
  ObjectCount* const count = ofClass(object_getClass(self));
  bool known = false;
  {
    // Before its place may be taken by another.
    const std::lock_guard<std::mutex> lock(count->mutex_);
    known = count->known_.erase(reinterpret_cast<const void*>(self)) > 0;
  }
  functionOf<void(id, SEL)>(count->dealloc_)(self, operation);
  const std::lock_guard<std::mutex> lock(count->mutex_);
  if (known) {
    ++count->ended_;
    count->endedBesideTheMainThread_ += [NSThread isMainThread] ? 0 : 1;
  }
}

int ObjectCount::made() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return made_;
}

int ObjectCount::alive() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return made_ - ended_;
}

int ObjectCount::endedBesideTheMainThread() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return endedBesideTheMainThread_;
}
