# The seed files go into Dados only while it holds no database: staging never touches a user's data.
if(NOT EXISTS "${DADOS}/Dados.Mdb")
    file(COPY "${SEMENTES}/Temp.Mdb" "${SEMENTES}/Temp.Zip" DESTINATION "${DADOS}")
endif()
