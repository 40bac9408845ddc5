#import "tests/cocoa/StrictPlatform.h"

#import <AppKit/AppKit.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <objc/runtime.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <mutex>
#include <utility>
#include <vector>

#import "tests/cocoa/BundleUser.h"

namespace epg::test {

namespace {

std::atomic<bool> isStrictWithTheTest{false};

std::mutex violationsMutex;
std::string violations;

bool isOfBundle(const void* address) {
  Dl_info info{};
  return ::dladdr(address, &info) != 0 && info.dli_fname != nullptr &&
         std::strstr(info.dli_fname, "EPGDorvaSelin.bundle/") != nullptr;
}

/// Raises where `isRight` is not, and the caller is one that the platform is strict with.
void require(bool isRight, SEL command, const void* caller) {
  if (isRight) return;
  const bool isBundles = isOfBundle(caller);
  if (!isBundles && !isStrictWithTheTest) return;
  NSString* name = NSStringFromSelector(command);
  if (isBundles) {
    const std::lock_guard<std::mutex> lock(violationsMutex);
    violations += std::string(" ") + [name UTF8String];
  }
  [NSException raise:NSInvalidArgumentException format:@"The strict platform refuses this call of %@", name];
}

constexpr std::size_t mostMethods = 64;
std::array<IMP, mostMethods> originals;

template <typename Function>
Function* originalAt(std::size_t slot) {
  return functionOf<Function>(originals[slot]);
}

bool areObjects(const id* objects, NSUInteger count) {
  return count == 0 || (objects != nullptr && std::find(objects, objects + count, nil) == objects + count);
}

// The shapes of methods, each with what it requires.

template <typename Result>
struct OneObject {
  template <std::size_t slot>
  static Result call(id self, SEL command, id object) {
    require(object != nil, command, __builtin_return_address(0));
    return originalAt<Result(id, SEL, id)>(slot)(self, command, object);
  }
};

template <typename Result>
struct TwoObjects {
  template <std::size_t slot>
  static Result call(id self, SEL command, id one, id other) {
    require(one != nil && other != nil, command, __builtin_return_address(0));
    return originalAt<Result(id, SEL, id, id)>(slot)(self, command, one, other);
  }
};

struct FirstOfThree {
  template <std::size_t slot>
  static id call(id self, SEL command, id first, void* second, id third) {
    require(first != nil, command, __builtin_return_address(0));
    return originalAt<id(id, SEL, id, void*, id)>(slot)(self, command, first, second, third);
  }
};

struct Objects {
  template <std::size_t slot>
  static id call(id self, SEL command, const id* objects, NSUInteger count) {
    require(areObjects(objects, count), command, __builtin_return_address(0));
    return originalAt<id(id, SEL, const id*, NSUInteger)>(slot)(self, command, objects, count);
  }
};

struct ObjectsAndKeys {
  template <std::size_t slot>
  static id call(id self, SEL command, const id* objects, const id* keys, NSUInteger count) {
    require(areObjects(objects, count) && areObjects(keys, count), command, __builtin_return_address(0));
    return originalAt<id(id, SEL, const id*, const id*, NSUInteger)>(slot)(self, command, objects, keys, count);
  }
};

struct Characters {
  template <std::size_t slot>
  static id call(id self, SEL command, const unichar* characters, NSUInteger length) {
    require(characters != nullptr, command, __builtin_return_address(0));
    return originalAt<id(id, SEL, const unichar*, NSUInteger)>(slot)(self, command, characters, length);
  }
};

struct Bytes {
  template <std::size_t slot>
  static id call(id self, SEL command, const void* bytes, NSUInteger length) {
    require(bytes != nullptr || length == 0, command, __builtin_return_address(0));
    return originalAt<id(id, SEL, const void*, NSUInteger)>(slot)(self, command, bytes, length);
  }
};

struct Index {
  template <std::size_t slot>
  static id call(id self, SEL command, NSUInteger index) {
    require(index < [self count], command, __builtin_return_address(0));
    return originalAt<id(id, SEL, NSUInteger)>(slot)(self, command, index);
  }
};

template <bool ofString>
struct BufferAndRange {
  template <std::size_t slot>
  static void call(id self, SEL command, void* buffer, NSRange range) {
    const NSUInteger size = ofString ? [self length] : [self count];
    require(range.location <= size && range.length <= size - range.location, command, __builtin_return_address(0));
    originalAt<void(id, SEL, void*, NSRange)>(slot)(self, command, buffer, range);
  }
};

template <typename Shape, std::size_t... slots>
IMP strictAt(std::size_t slot, std::index_sequence<slots...>) {
  static const IMP all[] = {implementationOf(&Shape::template call<slots>)...};
  return all[slot];
}

/// Puts strict methods in the place of the platform's.
class Strictness {
 public:
  template <typename Shape>
  void add(Class aClass, SEL selector) {
    // Asked for first, so that the class has a table of methods of its own: GCC's runtime puts what comes earlier into
    // one that all classes without a table share.
    const IMP original = class_getMethodImplementation(aClass, selector);
    const Method method = class_getInstanceMethod(aClass, selector);
    const std::pair<Class, SEL> place(aClass, selector);
    if (method == nullptr || std::find(places_.begin(), places_.end(), place) != places_.end()) return;
    const std::size_t slot = places_.size();
    ASSERT_LT(slot, mostMethods);
    places_.push_back(place);
    originals[slot] = original;
    const IMP strict = strictAt<Shape>(slot, std::make_index_sequence<mostMethods>());
    // One that is only inherited stays what it is for the other classes.
    if (class_addMethod(aClass, selector, strict, method_getTypeEncoding(method)) == NO) {
      method_setImplementation(method, strict);
    }
  }

  template <typename Shape>
  void addOfClass(Class aClass, SEL selector) {
    add<Shape>(object_getClass(aClass), selector);
  }

 private:
  std::vector<std::pair<Class, SEL>> places_;
};

void makeStringsStrict(Strictness& strictness) {
  NSString* ascii = [NSString stringWithFormat:@"a%d", 1];
  NSString* wide = [NSString stringWithFormat:@"%C", static_cast<unichar>(0x416)];
  NSMutableString* changing = [NSMutableString stringWithCapacity:1];
  for (id string : {static_cast<id>(@"a"), static_cast<id>(ascii), static_cast<id>(wide), static_cast<id>(changing)}) {
    strictness.add<BufferAndRange<true>>([string class], @selector(getCharacters:range:));
    strictness.add<OneObject<id>>([string class], @selector(stringByAppendingString:));
  }
  for (Class aClass : {[NSString class], [NSMutableString class]}) {
    strictness.addOfClass<Characters>(aClass, @selector(stringWithCharacters:length:));
    strictness.addOfClass<OneObject<id>>(aClass, @selector(stringWithString:));
  }
  strictness.addOfClass<Bytes>([NSData class], @selector(dataWithBytes:length:));
}

void makeCollectionsStrict(Strictness& strictness) {
  NSArray* one = [NSArray arrayWithObject:@"a"];
  NSMutableArray* list = [NSMutableArray arrayWithObject:@"a"];
  for (id array : {static_cast<id>(one), static_cast<id>(list), static_cast<id>([one mutableCopy])}) {
    strictness.add<Index>([array class], @selector(objectAtIndex:));
    strictness.add<BufferAndRange<false>>([array class], @selector(getObjects:range:));
    strictness.add<OneObject<void>>([array class], @selector(addObject:));
  }
  for (Class aClass : {[NSArray class], [NSMutableArray class]}) {
    strictness.addOfClass<OneObject<id>>(aClass, @selector(arrayWithObject:));
    strictness.addOfClass<Objects>(aClass, @selector(arrayWithObjects:count:));
  }
  for (id dictionary : {static_cast<id>([NSMutableDictionary dictionary]),
                        static_cast<id>([[NSDictionary dictionaryWithObject:@"" forKey:@""] mutableCopy])}) {
    strictness.add<TwoObjects<void>>([dictionary class], @selector(setObject:forKey:));
    strictness.add<OneObject<void>>([dictionary class], @selector(removeObjectForKey:));
  }
  for (Class aClass : {[NSDictionary class], [NSMutableDictionary class]}) {
    strictness.addOfClass<TwoObjects<id>>(aClass, @selector(dictionaryWithObject:forKey:));
    strictness.addOfClass<ObjectsAndKeys>(aClass, @selector(dictionaryWithObjects:forKeys:count:));
  }
  strictness.add<OneObject<void>>([[NSMutableSet set] class], @selector(addObject:));
}

void makeTheRestStrict(Strictness& strictness) {
  strictness.add<OneObject<NSComparisonResult>>([[NSDate date] class], @selector(compare:));
  strictness.add<OneObject<NSInteger>>([[NSTimeZone defaultTimeZone] class], @selector(secondsFromGMTForDate:));
  strictness.addOfClass<FirstOfThree>([NSError class], @selector(errorWithDomain:code:userInfo:));
  strictness.addOfClass<FirstOfThree>([NSException class], @selector(exceptionWithName:reason:userInfo:));
  strictness.addOfClass<OneObject<id>>([NSXMLNode class], @selector(elementWithName:));
  strictness.addOfClass<OneObject<id>>([NSXMLNode class], @selector(textWithStringValue:));
  strictness.addOfClass<TwoObjects<id>>([NSXMLNode class], @selector(attributeWithName:stringValue:));
  strictness.add<OneObject<void>>([NSXMLElement class], @selector(addChild:));
  strictness.add<OneObject<void>>([NSXMLElement class], @selector(addAttribute:));
  strictness.add<OneObject<void>>([NSControl class], @selector(setStringValue:));
  strictness.add<OneObject<void>>([NSTextField class], @selector(setStringValue:));
  strictness.add<OneObject<void>>([NSView class], @selector(addSubview:));
}

class NoViolations : public ::testing::Environment {
 public:
  void TearDown() override {
    const std::lock_guard<std::mutex> lock(violationsMutex);
    EXPECT_EQ(violations, "") << "The bundle calls what raises an exception on a Mac";
  }
};

}  // namespace

void makePlatformStrict() {
  static Strictness strictness;
  makeStringsStrict(strictness);
  makeCollectionsStrict(strictness);
  makeTheRestStrict(strictness);
  ::testing::AddGlobalTestEnvironment(new NoViolations);
}

StrictWithTheTest::StrictWithTheTest() { isStrictWithTheTest = true; }
StrictWithTheTest::~StrictWithTheTest() { isStrictWithTheTest = false; }

}  // namespace epg::test
