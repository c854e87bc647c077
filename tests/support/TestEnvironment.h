// SPDX-License-Identifier: MIT
#pragma once

/// Gives the real locator the budget that the environment variable ZEF_DESCRIPTOR_BUDGET sets, if
/// it is set. Done once before the first test; call it in a test that changed the budget.
void applyDescriptorBudget();
