// Objects that are known by the names of their methods alone and reached while the program runs.
// Nothing here names the kind of an object at compile time.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace quorvale {

class LateBound;
using LateObject = std::shared_ptr<LateBound>;  // null: no object

// What a late-bound call takes and gives. monostate stands for no value.
using LateValue = std::variant<std::monostate, bool, int, std::string, LateObject>;

// A call that the object refused, or that there is nobody to take; what() says why.
class LateBoundError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class LateBound {
 public:
  virtual ~LateBound() = default;

  // The name of its kind, such as "Connection"; "Object" where it tells none.
  virtual std::string TypeName() = 0;
  // Each throws LateBoundError if the object refuses.
  virtual LateValue Get(const std::string& property,
                        const std::vector<LateValue>& arguments = {}) = 0;
  virtual void Set(const std::string& property, const LateValue& value) = 0;
  virtual LateValue Call(const std::string& method,
                         const std::vector<LateValue>& arguments = {}) = 0;
  // The members of a collection, in its order.
  virtual std::vector<LateValue> Members() = 0;
};

// Where late-bound objects come from.
class LateBinding {
 public:
  virtual ~LateBinding() = default;

  // A new object by its registered name ("ADODB.Connection"); null if it cannot be had.
  virtual LateObject Create(const std::string& name) = 0;
  // The transaction context that this process runs in, and the web request that it answers; null
  // if there is none.
  virtual LateObject ObjectContext() { return nullptr; }
  virtual LateObject Request() { return nullptr; }
};

// The value as text: a number in decimal, "True" or "False", "" for no value and for an object.
std::string TextOf(const LateValue& value);
// The value as a number; 0 for what is none.
int NumberOf(const LateValue& value);
// The value as an object; null for what is none.
LateObject ObjectOf(const LateValue& value);

}  // namespace quorvale
