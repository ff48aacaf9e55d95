#pragma once

// RMSE and interval coverage of em, em_missing, joint and em_failure, and of the failure rate,
// on populations simulated with failed amplifications, null alleles, both, with and without
// inbreeding; prints Markdown tables.
int ValidateFailure(int populations, int bootstrap);
