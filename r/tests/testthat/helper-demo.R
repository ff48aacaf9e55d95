demo_file <- function(name) system.file("extdata", name, package = "tavrelle")
