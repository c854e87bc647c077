// SPDX-License-Identifier: MIT
#pragma once

/// Gives the system's locator the budget that the environment variable ZEF_DESCRIPTOR_BUDGET asks
/// for, if it does. Done once before the first test; for tests that changed the budget.
void applyDescriptorBudget();
