#pragma once

#include <string>

// Bias, RMSE and interval coverage of every null allele estimate and of F on populations
// simulated with known null allele frequencies and inbreeding; prints Markdown tables.
int ValidateLikelihood(const std::string& tables, int populations, int bootstrap);
