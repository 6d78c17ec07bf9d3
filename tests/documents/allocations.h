/* SPDX-License-Identifier: Apache-2.0 */
/* cJSON's memory in a test's hand. */
#ifndef PUBSEC_TESTS_DOCUMENT_ALLOCATIONS_H
#define PUBSEC_TESTS_DOCUMENT_ALLOCATIONS_H

#include <functional>

/* While it lives, cJSON's allocations are counted and told to a hook; an allocation fails when the hook says so. */
class Allocations
{
  public:
    /* Gets the allocation's number, from 1; false lets it fail. */
    using Hook = std::function<bool(int number)>;

    explicit Allocations(Hook hook);
    ~Allocations();
    Allocations(const Allocations&) = delete;
    Allocations& operator=(const Allocations&) = delete;

    static int made();        /* asked for so far, failed ones included */
    static int outstanding(); /* and not given back */
};

#endif
