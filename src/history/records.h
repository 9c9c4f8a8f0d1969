// The call records: the layout they share with the host, and the table they stand in.
#pragma once

#include <cfgxml/history.h>

#include <cstddef>

#include "support/slots.h"

namespace cfgxml::history {

static_assert(offsetof(HISTORY_DATA_T, Date) == 16);
static_assert(offsetof(HISTORY_DATA_T, Reserved) == 44);
static_assert(offsetof(HISTORY_DATA_T, LocalSipName) == 56);
static_assert(offsetof(HISTORY_DATA_T, LocalSipPort) == 184);
static_assert(offsetof(HISTORY_DATA_T, RemoteSipName) == 188);
static_assert(offsetof(HISTORY_DATA_T, RemoteDisplayName) == 316);
static_assert(offsetof(HISTORY_DATA_T, CallDuration) == 384);
static_assert(sizeof(HISTORY_DATA_T) == 396);
static_assert(sizeof(HISTORY_DATA_LIST) == std::size_t{100} * 396);

static_assert(offsetof(HISTORY_SUMMARY_T, Date) == 12);
static_assert(offsetof(HISTORY_SUMMARY_T, LocalSipName) == 40);
static_assert(offsetof(HISTORY_SUMMARY_T, RemoteSipName) == 172);
static_assert(offsetof(HISTORY_SUMMARY_T, RemoteDisplayName) == 300);
static_assert(offsetof(HISTORY_SUMMARY_T, next) == 368);
static_assert(sizeof(HISTORY_SUMMARY_T) == 368 + sizeof(void*));

static_assert(offsetof(HISTORY_SUMMARY_SET_T, sync_index) == 12);
static_assert(offsetof(HISTORY_SUMMARY_SET_T, entries) == 16);
static_assert(sizeof(HISTORY_SUMMARY_SET_T) == 16 + 100 * sizeof(HISTORY_SUMMARY_T));

using Calls = Slots<HISTORY_DATA_T, CFGXML_HISTORY_CAPACITY, &HISTORY_DATA_T::ID>;

/// The host's table, or nullptr when it has none, which is logged for the worker.
HISTORY_DATA_LIST* host_table(const char* worker);

/// Copies the fields that a summary has, the stored name among them.
void summarise(const HISTORY_DATA_T& call, HISTORY_SUMMARY_T* summary);

}  // namespace cfgxml::history
