// The exported functions by name, with what their parameters are, to be called with any arguments.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdint>
#include <string>
#include <typeindex>
#include <vector>

namespace zetac::test {

/** A parameter or a field. */
struct Parameter {
    bool isPointer;
    bool isFloat;          // the value, or what the pointer leads to
    bool isRecord;         // a structure of the header behind a pointer
    bool isIndirect;       // a pointer to pointers
    size_t size;           // of the value, or of one element behind a pointer; 0: opaque
    size_t innerSize;      // of one element behind a pointer to pointers; 0: none or opaque
    std::type_index type;  // behind the pointer
};

/** An argument. */
union Slot {
    int64_t number;
    void* pointer;
};

struct Function {
    std::string name;
    std::vector<Parameter> parameters;
    ZetStatus (*call)(const Slot* slots);
};

/** Throws where no function has the name; so does fieldNamed for a record. */
const Function& functionNamed(const std::string& name);

/** A field of a record that rows may name. Pointers in records lead to zeros of their own. */
struct Field {
    std::type_index record;
    std::string name;
    size_t offset;
    size_t count;
    Parameter type;
    size_t room;  // of a pointer: bytes behind it
};

const std::vector<Field>& recordFields();
const Field& fieldNamed(std::type_index record, const std::string& name);

}  // namespace zetac::test
